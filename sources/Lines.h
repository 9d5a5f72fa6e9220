#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvar_sources {

/// The lines of a text. Lines and columns count from 1; columns are bytes.
class Lines {
 public:
  /// The text must outlive this object and be shorter than 4 GiB.
  explicit Lines(std::string_view text);

  /// The number of lines. A last line without a line break counts; an empty text has none.
  [[nodiscard]] int count() const noexcept { return static_cast<int>(starts_.size()); }
  /// The line of a byte. An offset at or past the end belongs to the last line.
  [[nodiscard]] int lineAt(std::size_t offset) const noexcept;
  [[nodiscard]] int columnAt(std::size_t offset) const noexcept;
  /// Without its line break; empty if there is no such line.
  [[nodiscard]] std::string_view line(int number) const noexcept;
  /// The offset of the line. Requires: 1 <= number <= count().
  [[nodiscard]] std::size_t start(int number) const noexcept { return starts_[static_cast<std::size_t>(number) - 1]; }

 private:
  std::string_view text_;
  std::vector<std::uint32_t> starts_;
};

/// The text with every run of blanks, line breaks and line splices replaced by one blank, and none at the ends. Zero
/// bytes and bytes that are no UTF-8 become U+FFFD, so that any source can be stored as text.
[[nodiscard]] std::string withSingleBlanks(std::string_view text);

/// The same without any blanks: lines that differ only in layout are equal.
[[nodiscard]] std::string withoutBlanks(std::string_view text);

[[nodiscard]] constexpr bool isBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

/// A letter, a digit, an underscore or any byte above ASCII.
[[nodiscard]] constexpr bool isWordByte(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

[[nodiscard]] constexpr bool isDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

/// The text with ASCII letters in lower case.
[[nodiscard]] std::string lowered(std::string_view text);

}  // namespace kelvar_sources
