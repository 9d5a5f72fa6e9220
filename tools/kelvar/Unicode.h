#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_tool {

/// The text in UTF-8: each byte that belongs to no character becomes U+FFFD, the replacement character. Paths may hold
/// any bytes, and readers of JSON refuse a document for one that is wrong.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// How many columns a terminal takes for it: two for a wide character, none for a mark that joins the one before.
/// Requires: well-formed, without control characters.
[[nodiscard]] std::size_t displayWidth(std::string_view text) noexcept;

}  // namespace kelvar_tool
