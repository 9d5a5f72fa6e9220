#pragma once

#include <string>

namespace kelvar_tool {

/// The build flags that the analyses need, with comments, for `gcc` or `clang`. Throws UsageError for another name.
[[nodiscard]] std::string buildFlags(const std::string& compiler);

}  // namespace kelvar_tool
