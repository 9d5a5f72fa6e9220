#include "view/report/RowText.h"

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>

namespace kelvar_2_1_7 {

namespace {

constexpr int kDecimals = 2;
/// The digits of the largest number, its sign, point and decimals.
constexpr std::size_t kLongestNumber = std::numeric_limits<double>::max_exponent10 + 8;

using Digits = std::array<char, std::numeric_limits<long>::digits10 + 3>;

std::string_view digitsOf(Digits& digits, long number) noexcept {
  return {digits.begin(), std::to_chars(digits.begin(), digits.end(), number).ptr};
}

}  // namespace

RowText::RowText() : decimalPoint_(std::localeconv()->decimal_point) {}

RowText& RowText::piece() noexcept {
  end_ = std::min(size_ + kPieceSize - 1, text_.size() - 1);  // endLine needs one more
  return *this;
}

RowText& RowText::text(std::string_view text) noexcept {
  const std::size_t taken = std::min(text.size(), end_ - size_);
  std::memcpy(text_.data() + size_, text.data(), taken);
  size_ += taken;
  return *this;
}

RowText& RowText::blanks(std::size_t count) noexcept {
  const std::size_t taken = std::min(count, end_ - size_);
  std::memset(text_.data() + size_, ' ', taken);
  size_ += taken;
  return *this;
}

RowText& RowText::left(std::string_view whole, std::size_t width) noexcept {
  const std::string_view cut = whole.substr(0, width);
  Field(*this, width).text(cut.substr(0, cut.find('\0')));
  return *this;
}

RowText& RowText::right(std::string_view shown, std::size_t width) noexcept {
  return blanks(width - std::min(shown.size(), width)).text(shown);
}

RowText& RowText::integer(long number, std::size_t width) noexcept {
  Digits digits;
  return right(digitsOf(digits, number), width);
}

RowText& RowText::fixed(double number, std::size_t width) noexcept {
  std::array<char, kLongestNumber> digits;
  const char* const end = std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed, kDecimals).ptr;
  const std::string_view shown(digits.begin(), end);
  if (decimalPoint_ == "." || !std::isfinite(number)) return right(shown, width);
  const std::size_t point = shown.size() - kDecimals - 1;
  return blanks(width - std::min(shown.size(), width))  // printf counts a point of several bytes as one character too
      .text(shown.substr(0, point))
      .text(decimalPoint_)
      .text(shown.substr(point + 1));
}

void RowText::endLine(std::string& out) {
  text_[size_] = '\n';
  out.append(text_.data(), size_ + 1);
  size_ = 0;
}

RowText::Field& RowText::Field::text(std::string_view text) noexcept {
  const std::string_view shown = text.substr(0, rest_);
  rest_ -= shown.size();
  row_.text(shown);
  return *this;
}

RowText::Field& RowText::Field::integer(long number) noexcept {
  Digits digits;
  return text(digitsOf(digits, number));
}

}  // namespace kelvar_2_1_7
