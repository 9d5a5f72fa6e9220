#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kelvar_tool {

/// Runs git in `directory`, and hands each field of its standard output that a zero byte ends to `take`, until that
/// answers false; then git is stopped. Answers whether git ran, and all that it said was taken. Its complaints are
/// nobody's: it is asked on the off chance.
bool runGit(const std::string& directory, const std::vector<std::string>& arguments,
            const std::function<bool(std::string&& field)>& take);

}  // namespace kelvar_tool
