#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace kelvar_tool {

/// Where git says that vanished files went, from the commits that took them away, or from what is staged. Paths are
/// from the root. What is not in the answer is not known: there is no git, no repository, or no rename. Follows a file
/// through several renames. However many files are asked for, git is started a few times for each repository.
[[nodiscard]] std::unordered_map<std::string, std::string> renamedByGit(const std::vector<std::string>& paths);

}  // namespace kelvar_tool
