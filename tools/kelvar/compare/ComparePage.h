#pragma once

#include <string>

#include "CompareRuns.h"

namespace kelvar_tool {

/// The comparison as the page of `view` shows it: JSON, every value a text.
[[nodiscard]] std::string comparePage(const ComparedSides& sides);

}  // namespace kelvar_tool
