#pragma once

#include <string>
#include <vector>

#include "Annotations.h"

namespace kelvar_tool {

/// What is odd about a site that a person adds, a sentence each: its file or line is not there, the beginning that an
/// end needs is not among `others`, or the same site is.
[[nodiscard]] std::vector<std::string> doubtsOf(const kelvar_platform::Site& site,
                                                const std::vector<kelvar_platform::Site>& others);

}  // namespace kelvar_tool
