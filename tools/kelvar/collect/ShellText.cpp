#include "ShellText.h"

#include <string_view>

namespace kelvar_tool {

std::string shellWord(const std::string& word) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=./,:@%^";
  // A word with `=` in front of a command would be a variable of its environment.
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos && word.find('=') == std::string::npos) {
    return word;
  }
  if (word.starts_with('-') && word.find_first_not_of(kPlain) == std::string::npos) return word;
  std::string quoted = "'";
  for (const char one : word) {
    if (one == '\'') {
      quoted += "'\\''";
    } else {
      quoted += one;
    }
  }
  return quoted + "'";
}

std::string shellText(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + shellWord(word);
  return text;
}

}  // namespace kelvar_tool
