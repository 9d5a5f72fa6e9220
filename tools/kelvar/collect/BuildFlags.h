#pragma once

#include <string>

namespace kelvar_tool {

/// The flags that the analyses want, for a compiler by name, with what each is for. Throws UsageError for another name.
[[nodiscard]] std::string buildFlags(const std::string& compiler);

}  // namespace kelvar_tool
