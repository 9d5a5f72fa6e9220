#include "view/RowText.h"

#include <charconv>
#include <clocale>
#include <limits>

namespace kelvar_2_1_7 {

namespace {

constexpr std::size_t kDecimals = 2;
/// The digits of the largest number, its sign, point and decimals.
constexpr std::size_t kLongestNumber = std::numeric_limits<double>::max_exponent10 + 8;

}  // namespace

RowText::RowText() : decimalPoint_(std::localeconv()->decimal_point), isPoint_(decimalPoint_ == ".") {}

RowText& RowText::right(std::string_view shown, std::size_t width) noexcept {
  return blanks(width - std::min(shown.size(), width)).text(shown);
}

RowText& RowText::anyInteger(long number, std::size_t width) noexcept {
  std::array<char, std::numeric_limits<long>::digits10 + 3> digits;
  const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  return right({digits.begin(), end}, width);
}

RowText& RowText::anyFixed(double number, std::size_t width) noexcept {
  std::array<char, kLongestNumber> digits;
  const char* const end = std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed, kDecimals).ptr;
  const std::string_view shown(digits.begin(), end);
  if (isPoint_ || !std::isfinite(number)) return right(shown, width);
  const std::size_t point = shown.size() - kDecimals - 1;
  return blanks(width - std::min(shown.size(), width))  // a point of several bytes is one character there too
      .text(shown.substr(0, point))
      .text(decimalPoint_)
      .text(shown.substr(point + 1));
}

}  // namespace kelvar_2_1_7
