#pragma once

#include <string>

namespace kelvar_tool {

/// Git's revision of the sources in `folder`, with a `+` where they were changed since; empty where there is none.
[[nodiscard]] std::string revisionOf(const std::string& folder);

}  // namespace kelvar_tool
