#pragma once

#include <string>

#include "Subcommand.h"

namespace kelvar_tool {

/// Adds `scan` to `annotate`. `database` holds the path once the command line is parsed.
void addScan(CLI::App& annotate, const std::string& database, Action& chosen);

}  // namespace kelvar_tool
