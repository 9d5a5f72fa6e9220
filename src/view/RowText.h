#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kelvar_2_1_7 {

/// One line of a table. What it prints is what the C library's formats print while it rounds to the nearest, cut as it
/// cuts, without their cost: a table of a million rows has some ten million numbers. A line is made of pieces, and each
/// ends after kPieceSize - 1 bytes, whatever else is put into it.
class RowText {
 public:
  static constexpr std::size_t kPieceSize = 256;

  /// Reads how the C library writes a decimal point at the moment.
  RowText();

  /// Begins the next piece; at most kMostPieces in a line.
  RowText& piece() noexcept {
    end_ = std::min(size_ + kPieceSize - 1, text_.size());
    return *this;
  }
  RowText& text(std::string_view text) noexcept {
    const std::size_t taken = std::min(text.size(), room());
    std::memcpy(next(), text.data(), taken);
    size_ += taken;
    return *this;
  }
  RowText& blanks(std::size_t count) noexcept {
    const std::size_t taken = std::min(count, room());
    std::memset(next(), ' ', taken);
    size_ += taken;
    return *this;
  }
  /// As "%-[width].[width]s": cut to the width, and up to its first zero byte.
  RowText& left(std::string_view text, std::size_t width) noexcept;
  /// As "%[width]ld", in a column of at most nine characters.
  RowText& integer(long number, std::size_t width) noexcept;
  /// As "%[width].2f", in such a column too.
  RowText& fixed(double number, std::size_t width) noexcept;
  /// Ends the line behind `out`, and begins the next.
  void endLine(std::string& out) {
    text_[size_] = '\n';
    out.append(text_.data(), size_ + 1);
    size_ = 0;
  }

 private:
  static constexpr std::size_t kMostPieces = 16;
  /// The powers of ten: what has so many digits is less.
  static constexpr std::array<std::uint64_t, 10> kTenTo{1,      10,      100,      1000,      10000,
                                                        100000, 1000000, 10000000, 100000000, 1000000000};

  [[nodiscard]] char* next() noexcept { return text_.data() + size_; }
  [[nodiscard]] std::size_t room() const noexcept { return end_ - size_; }
  /// Writes the digits that stand before `end`, and answers where they begin.
  static char* digitsBefore(char* end, std::uint64_t number) noexcept {
    do {
      *--end = static_cast<char>('0' + number % 10);
      number /= 10;
    } while (number != 0);
    return end;
  }
  RowText& right(std::string_view text, std::size_t width) noexcept;
  /// Numbers that are too wide, and those that take more than a glance to print.
  RowText& anyInteger(long number, std::size_t width) noexcept;
  RowText& anyFixed(double number, std::size_t width) noexcept;

  std::array<char, kMostPieces * kPieceSize> text_;
  std::size_t size_ = 0;
  std::size_t end_ = 0;  // of the piece
  std::string decimalPoint_;
  bool isPoint_;  // the decimal point is '.'
};

// Almost all that is put into a row: small enough to become a few instructions, the widths being constants.

inline RowText& RowText::left(std::string_view whole, std::size_t width) noexcept {
  const std::string_view cut = whole.substr(0, width);
  const std::string_view shown = cut.substr(0, cut.find('\0'));
  if (room() < width) return text(shown).blanks(width - shown.size());
  std::memset(next(), ' ', width);
  std::memcpy(next(), shown.data(), shown.size());
  size_ += width;
  return *this;
}

inline RowText& RowText::integer(long number, std::size_t width) noexcept {
  if (number < 0 || static_cast<std::uint64_t>(number) >= kTenTo[width] || room() < width)
    return anyInteger(number, width);
  std::memset(next(), ' ', width);
  size_ += width;
  digitsBefore(next(), static_cast<std::uint64_t>(number));
  return *this;
}

inline RowText& RowText::fixed(double number, std::size_t width) noexcept {
  constexpr double kHalf = 0.5;
  const double product = std::abs(number) * 100;
  if (!(product < static_cast<double>(kTenTo.back())) || room() < width || !isPoint_) return anyFixed(number, width);
  // The product is off by half a unit in its last place at most, and below 2^52 one half is a number of whole units: so
  // the product lies on the side of it on which the number's own hundredths lie, or on it.
  auto hundredths = static_cast<std::uint64_t>(product);
  const double rest = product - static_cast<double>(hundredths);
  hundredths += rest > kHalf;
  const bool negative = std::signbit(number);
  if (rest == kHalf || hundredths >= kTenTo[width - 1 - negative]) return anyFixed(number, width);
  std::memset(next(), ' ', width);
  size_ += width;
  char* end = next();
  *--end = static_cast<char>('0' + hundredths % 10);
  *--end = static_cast<char>('0' + hundredths / 10 % 10);
  *--end = '.';
  end = digitsBefore(end, hundredths / 100);
  if (negative) *--end = '-';
  return *this;
}

}  // namespace kelvar_2_1_7
