#pragma once

#include "Project.h"
#include "RunFolder.h"
#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar runs`: the runs of a project, and how each matches today's annotations.
void addRuns(CLI::App& kelvar, Action& chosen);

/// Fills in the host and the times that run.json does not give, from the results.
void askResults(const Pieces& pieces, kelvar_import::RunFacts& facts);

}  // namespace kelvar_tool
