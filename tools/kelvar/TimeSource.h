#pragma once

#include <string>

#include "Figures.h"
#include "Overview.h"
#include "Project.h"

namespace kelvar_tool {

/// What measured the times of a project, as its import noted it in the log of the result: `perf, in seconds`,
/// `callgrind, in millions of instructions`, `coz`. That of the survey, whose times loops have too, else of the
/// suitability analysis. Empty where nothing says so: results of a suite's own tools need no such log.
[[nodiscard]] std::string timeSourceOf(const Pieces& pieces);

/// What of the survey's time lies where no source is known, and so is in no row, as its import noted it. 0 where
/// nothing says so.
[[nodiscard]] double placelessTimeOf(const Pieces& pieces);

/// What the times of such a source count.
[[nodiscard]] kelvar_page::TimeUnit unitOf(const std::string& timeSource);
/// What the times of each analysis count; those of a modelled suitability are the survey's.
[[nodiscard]] kelvar_page::TimeUnits unitsOf(const Pieces& pieces);

}  // namespace kelvar_tool
