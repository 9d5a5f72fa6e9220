#pragma once

#include <string>

namespace kelvar_tool {

/// The git revision of the sources in `folder`, with a `+` if there are uncommitted changes; empty when there is none.
[[nodiscard]] std::string revisionOf(const std::string& folder);

}  // namespace kelvar_tool
