#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace kelvar_tool {

/// The present paths of missing files, from the commits that removed them or from what is staged. Paths are absolute.
/// Follows a file through several renames. Files without an answer are missing from the result: there is no git, no
/// repository or no rename. Starts git only a few times for each repository, however many files there are.
[[nodiscard]] std::unordered_map<std::string, std::string> renamedByGit(const std::vector<std::string>& paths);

}  // namespace kelvar_tool
