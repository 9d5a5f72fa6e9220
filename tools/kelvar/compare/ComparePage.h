#pragma once

#include <string>

#include "CompareRuns.h"

namespace kelvar_tool {

/// The comparison for the page of `view`, as JSON; figures are texts, ready to show.
[[nodiscard]] std::string comparePage(const ComparedSides& sides);

}  // namespace kelvar_tool
