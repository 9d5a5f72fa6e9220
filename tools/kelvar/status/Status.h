#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar status`: how well results still match the annotations, and which sites have moved.
void addStatus(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
