#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kelvar_tool {

/// Runs git in `directory` and passes each field of its output, ended by a zero byte, to `take`. Stops git when `take`
/// returns false. Returns whether git succeeded and all fields were taken. Error messages of git are dropped: a tree
/// need not be a repository.
bool runGit(const std::string& directory, const std::vector<std::string>& arguments,
            const std::function<bool(std::string&& field)>& take);

}  // namespace kelvar_tool
