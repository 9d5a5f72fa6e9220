#pragma once

#include "Project.h"
#include "RunFolder.h"
#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar runs`: the runs of a project, and how each matches today's annotations.
void addRuns(CLI::App& kelvar, Action& chosen);

/// Fills in what was not written for the run as a whole, and what its results tell of themselves.
void askResults(const Pieces& pieces, kelvar_import::RunFacts& facts);

}  // namespace kelvar_tool
