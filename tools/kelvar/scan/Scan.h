#pragma once

#include <string>

#include "Subcommand.h"

namespace kelvar_tool {

/// Adds `scan` to `annotate`, whose database is named by `database` once the line is read.
void addScan(CLI::App& annotate, const std::string& database, Action& chosen);

}  // namespace kelvar_tool
