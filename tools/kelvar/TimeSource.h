#pragma once

#include <string>

#include "Figures.h"
#include "Overview.h"
#include "Project.h"

namespace kelvar_tool {

/// The tool that measured the times of a project and their unit, from the log that the import wrote beside the result:
/// `perf, in seconds`, `callgrind, in millions of instructions`, `coz`. Taken from the survey, or from the suitability
/// analysis if there is no survey. Empty when no log says so: results of a suite's own tools need no such log.
[[nodiscard]] std::string timeSourceOf(const Pieces& pieces);

/// The part of the survey's time in code whose source is unknown, which is in no row, from the same log. 0 when no log
/// says so.
[[nodiscard]] double placelessTimeOf(const Pieces& pieces);

/// The unit in the text that timeSourceOf() returns.
[[nodiscard]] kelvar_page::TimeUnit unitOf(const std::string& timeSource);
/// The units of the times of each analysis. A modelled suitability has the unit of the survey.
[[nodiscard]] kelvar_page::TimeUnits unitsOf(const Pieces& pieces);

}  // namespace kelvar_tool
