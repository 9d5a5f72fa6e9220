#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar compare`: what changed from some runs to others.
void addCompare(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
