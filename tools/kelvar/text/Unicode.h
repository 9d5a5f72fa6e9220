#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_tool {

/// The text with each byte that is not UTF-8 replaced by U+FFFD. Paths may hold any bytes, and JSON parsers refuse a
/// document with an invalid one.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// The width on a terminal: two columns for a wide character, none for a combining mark. Requires valid UTF-8 without
/// control characters.
[[nodiscard]] std::size_t displayWidth(std::string_view text) noexcept;

}  // namespace kelvar_tool
