#pragma once

#include <string>
#include <vector>

namespace kelvar_tool {

/// The word as a shell takes it, in UTF-8 whatever its bytes are.
[[nodiscard]] std::string shellWord(const std::string& word);
/// The words as a shell takes them, a blank between two.
[[nodiscard]] std::string shellText(const std::vector<std::string>& words);

}  // namespace kelvar_tool
