#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar runs`: the runs of a project, and how each matches today's annotations.
void addRuns(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
