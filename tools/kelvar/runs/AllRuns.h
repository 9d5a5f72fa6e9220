#pragma once

#include "ProjectOptions.h"
#include "Subcommand.h"
#include "report/Formats.h"

namespace kelvar_tool {

/// Prints the project's own results and then each of its runs, as CSV or with `json` as one object: the rows of a
/// report with the facts of the run. One run is in memory at a time. Throws UsageError if no project is given, if a
/// piece is given another path, or if there is no run.
ExitStatus reportAllRuns(const ProjectRequest& request, const Selection& selection, bool json);

}  // namespace kelvar_tool
