#include "ShellText.h"

#include <cstdio>
#include <string_view>

#include "Utf8.h"

namespace kelvar_tool {

namespace {

/// In `$'...'` quotes, whose escapes keep the text valid UTF-8.
std::string escapedWord(std::string_view word) {
  std::string quoted = "$'";
  while (!word.empty()) {
    const std::size_t size = kelvar_platform::characterSize(word);
    if (size == 0) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(word.front())));
      quoted += escape;
    } else {
      if (word.front() == '\'' || word.front() == '\\') quoted += '\\';
      quoted += word.substr(0, size);
    }
    word.remove_prefix(size == 0 ? 1 : size);
  }
  return quoted + "'";
}

}  // namespace

std::string shellWord(const std::string& word) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=./,:@%^";
  // A word with `=` before the command would set an environment variable.
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos && word.find('=') == std::string::npos) {
    return word;
  }
  if (word.starts_with('-') && word.find_first_not_of(kPlain) == std::string::npos) return word;
  if (!kelvar_platform::isUtf8(word)) return escapedWord(word);
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
