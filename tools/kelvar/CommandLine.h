#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// What the parser of the command line leaves to be done around it.
namespace kelvar_tool {

/// The arguments as the parser takes them, the last one first. An argument `--name=` carries an empty text, which the
/// parser would take for none, and take the next argument: it becomes two, unless it is itself the value of the option
/// before.
[[nodiscard]] std::vector<std::string> forParser(const CLI::App& kelvar, int count, char** arguments);

/// The subcommand of a subcommand that was named last; `app` itself where none was.
[[nodiscard]] const CLI::App& innermost(const CLI::App& app);

/// What leads to it, when it is typed: `kelvar annotate DATABASE move`.
[[nodiscard]] std::string fullName(const CLI::App& app);
[[nodiscard]] std::string helpOf(const CLI::App& app);

/// Why the line could not be parsed. The parser reports first what is missing; what it did not know is more often
/// why, and is named with the nearest that it knows.
[[nodiscard]] std::string complaint(const CLI::App& kelvar, const CLI::ParseError& error);

}  // namespace kelvar_tool
