// Whether rows are what the C library's formats print.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "view/report/RowText.h"

using namespace kelvar_2_1_7;

namespace {

template <class... Values>
std::string printed(const char* format, Values... values) {
  char piece[RowText::kPieceSize];
  std::snprintf(piece, sizeof piece, format, values...);
  return std::string(piece) + '\n';
}

template <class Put>
std::string row(Put put) {
  RowText text;
  std::string out;
  put(text.piece());
  text.endLine(out);
  return out;
}

TEST(RowText, PrintsNumbersAsTheCLibraryDoes) {
  using Limits = std::numeric_limits<double>;
  std::vector<double> numbers{0,
                              -0.0,
                              0.005,
                              0.015,
                              0.125,
                              2.675,
                              99999.995,
                              -9.995,
                              1e300,
                              -1e22,
                              5e-324,
                              1234.5,
                              Limits::max(),
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::quiet_NaN(),
                              -Limits::quiet_NaN()};
  std::mt19937_64 engine(1);
  for (int i = 0; i < 20000; ++i) {
    numbers.push_back(std::bit_cast<double>(engine()));
    numbers.push_back(static_cast<double>(static_cast<std::int64_t>(engine() >> 40)) / 1000);
    // Halfway between two hundredths, as near as a double comes to it, and beside it.
    const double halfway = static_cast<double>(i - 10000) / 200;
    for (const double towards : {halfway, Limits::infinity(), -Limits::infinity()})
      numbers.push_back(std::nextafter(halfway, towards));
  }
  for (const double number : numbers) {
    ASSERT_EQ(row([&](RowText& text) { text.fixed(number, 7).text("|").fixed(number, 6).text("s"); }),
              printed("%7.2f|%6.2fs", number, number));
  }
  for (const long number : {0L, -1L, 9999999L, 12345678L, std::numeric_limits<long>::min()}) {
    EXPECT_EQ(row([&](RowText& text) { text.integer(number, 7); }), printed("%7ld", number));
  }
}

TEST(RowText, CutsTextsAndPieces) {
  const std::string label("a\0b", 3);
  EXPECT_EQ(row([&](RowText& text) { text.left(label, 16).text("|").left("seventeen letters", 16); }),
            printed("%-16.16s|%-16.16s", label.c_str(), "seventeen letters"));
  const double wide = std::numeric_limits<double>::max();
  EXPECT_EQ(row([&](RowText& text) { text.integer(1, 9).fixed(wide, 7).blanks(3).text("lost"); }),
            printed("%9d%7.2f   lost", 1, wide));
}

}  // namespace
