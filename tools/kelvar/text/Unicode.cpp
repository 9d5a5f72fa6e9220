#include "Unicode.h"

#include <utf8proc.h>

#include <algorithm>

namespace kelvar_tool {

namespace {

struct Character {
  utf8proc_int32_t code = -1;  // negative for a byte that is not UTF-8
  std::size_t size = 1;
};

// The first character of `text`, which is not empty.
Character firstOf(std::string_view text) noexcept {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return {.code = first, .size = 1};
  Character character;
  const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  const auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &character.code);
  if (size > 0) character.size = static_cast<std::size_t>(size);
  return character;
}

}  // namespace

std::string wellFormed(std::string_view text) {
  constexpr std::string_view kReplacement = "\xef\xbf\xbd";
  const auto plain = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (std::all_of(text.begin(), text.end(), plain)) return std::string(text);
  std::string out;
  while (!text.empty()) {
    const Character character = firstOf(text);
    out += character.code < 0 ? kReplacement : text.substr(0, character.size);
    text.remove_prefix(character.size);
  }
  return out;
}

std::size_t displayWidth(std::string_view text) noexcept {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstOf(text);
    width += static_cast<std::size_t>(std::max(utf8proc_charwidth(character.code), 0));
    text.remove_prefix(character.size);
  }
  return width;
}

}  // namespace kelvar_tool
