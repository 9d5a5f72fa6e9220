#pragma once

#include <string>

#include "Project.h"

namespace kelvar_tool {

/// What measured the times of a project, as its import noted it in the log of the result: `perf, in seconds`,
/// `callgrind, in millions of instructions`, `coz`. That of the survey, whose times loops have too, else of the
/// suitability analysis. Empty where nothing says so: results of a suite's own tools need no such log.
[[nodiscard]] std::string timeSourceOf(const Pieces& pieces);

/// The same as a sentence for people, who see times with the units of time: what else they count is said.
[[nodiscard]] std::string timeSourceText(const std::string& source);

}  // namespace kelvar_tool
