#pragma once

#include <string>
#include <vector>

namespace kelvar_tool {

/// The word quoted for a shell, in UTF-8 whatever its bytes are.
[[nodiscard]] std::string shellWord(const std::string& word);
/// The words quoted for a shell, separated by blanks.
[[nodiscard]] std::string shellText(const std::vector<std::string>& words);

}  // namespace kelvar_tool
