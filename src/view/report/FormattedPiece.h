#pragma once

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <new>
#include <string>

namespace kelvar_2_1_7 {

/// Appends one formatted piece, cut to what fits into a buffer of `Size` bytes with a zero byte at its end. Texts are
/// taken up to their first zero byte.
template <std::size_t Size>
[[gnu::format(printf, 2, 3)]] void appendPiece(std::string& out, const char* format, ...) {
  std::array<char, Size> buffer;
  std::va_list values;
  va_start(values, format);
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, values);
  va_end(values);
  if (length < 0) throw std::bad_alloc();  // the C library had no room for a long number
  out.append(buffer.data(), std::min(static_cast<std::size_t>(length), Size - 1));
}

}  // namespace kelvar_2_1_7
