#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>

namespace kelvar_tool {

/// Adds an option or, without dashes, an argument; `take` is called with its text exactly as typed. The parser's own
/// conversion would accept octal and hexadecimal numbers and ignore empty texts.
CLI::Option* addText(CLI::App& app, const std::string& name, const std::string& help,
                     std::function<void(const std::string& text)> take);

/// The same for a path, which is stored normalised. An empty one is a usage error.
CLI::Option* addPath(CLI::App& app, const std::string& name, const std::string& value, const std::string& help,
                     std::string& path);

/// Adds `--run NAME`, which `run` then holds. What may not name a run is a usage error.
void addRun(CLI::App& app, const std::string& help, std::optional<std::string>& run);

}  // namespace kelvar_tool
