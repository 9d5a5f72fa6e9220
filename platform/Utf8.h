#pragma once

#include <cstddef>
#include <string_view>

namespace kelvar_platform {

/// Whether all of `text` is UTF-8, zero bytes included. Asked for every text of every row, so short plain ones are
/// cheap.
[[nodiscard]] bool isUtf8(std::string_view text) noexcept;

/// The bytes of the character that `text` begins with; 0 where it begins with none.
[[nodiscard]] std::size_t characterSize(std::string_view text) noexcept;

}  // namespace kelvar_platform
