#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar collect`: measures a program with the tools of this machine, and imports what they wrote.
void addCollect(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
