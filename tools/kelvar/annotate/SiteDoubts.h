#pragma once

#include <string>
#include <vector>

#include "Annotations.h"

namespace kelvar_tool {

/// What is suspicious about a site that the user adds, a sentence each: its file or line does not exist, it ends
/// nothing among `others`, or `others` has the same site already.
[[nodiscard]] std::vector<std::string> doubtsOf(const kelvar_platform::Site& site,
                                                const std::vector<kelvar_platform::Site>& others);

}  // namespace kelvar_tool
