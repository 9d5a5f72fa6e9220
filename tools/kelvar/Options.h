#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace kelvar_tool {

/// Adds an option or, without dashes, an argument whose text is handed to `take` exactly as it was typed. What the
/// parser would make of numbers (octal, hexadecimal) and of empty texts (nothing) is not what is meant here.
CLI::Option* addText(CLI::App& app, const std::string& name, const std::string& help,
                     std::function<void(const std::string& text)> take);

/// The same for a path, which is stored normalised. An empty one is a usage error.
CLI::Option* addPath(CLI::App& app, const std::string& name, const std::string& value, const std::string& help,
                     std::string& path);

}  // namespace kelvar_tool
