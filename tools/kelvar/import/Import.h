#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar import`: turns the output of a performance tool into a result of a project.
void addImport(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
