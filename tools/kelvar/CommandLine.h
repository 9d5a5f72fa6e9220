#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// What the command line needs beyond its parser.
namespace kelvar_tool {

/// The arguments as the parser takes them, the last one first. An argument `--name=` has an empty value, which the
/// parser would ignore in favour of the next argument; so it is split in two, unless it is itself the value of the
/// option before.
[[nodiscard]] std::vector<std::string> forParser(const CLI::App& kelvar, int count, char** arguments);

/// The innermost subcommand on the command line; `app` if there is none.
[[nodiscard]] const CLI::App& innermost(const CLI::App& app);

/// Its name with everything that is typed before it: `kelvar annotate DATABASE move`.
[[nodiscard]] std::string fullName(const CLI::App& app);
[[nodiscard]] std::string helpOf(const CLI::App& app);

/// Why the line could not be parsed. The parser reports first what is missing, but more often the cause is an unknown
/// name, so that is reported first, with the nearest known name.
[[nodiscard]] std::string complaint(const CLI::App& kelvar, const CLI::ParseError& error);

}  // namespace kelvar_tool
