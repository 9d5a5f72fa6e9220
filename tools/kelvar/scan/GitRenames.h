#pragma once

#include <optional>
#include <string>

namespace kelvar_tool {

/// Where git says that a vanished file went, from the commit that took it away, or from what is staged. `path` is from
/// the root. Nothing where there is no git, no repository, or no rename. Follows a file through several renames.
[[nodiscard]] std::optional<std::string> renamedByGit(const std::string& path);

}  // namespace kelvar_tool
