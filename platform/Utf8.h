#pragma once

#include <cstddef>
#include <string_view>

namespace kelvar_platform {

/// Whether all of `text` is UTF-8; zero bytes are allowed. Called for every text of every row, so short ASCII is fast.
[[nodiscard]] bool isUtf8(std::string_view text) noexcept;

/// The size in bytes of the first character of `text`; 0 if it does not begin with one.
[[nodiscard]] std::size_t characterSize(std::string_view text) noexcept;

}  // namespace kelvar_platform
