#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_2_1_7 {

/// One line of a table. It prints what the C library's formats would, rounded to nearest and cut as these cut, without
/// interpreting a format for each of some ten million numbers. A line is made of pieces, and each ends after
/// kPieceSize - 1 bytes, whatever else is put into it.
class RowText {
 public:
  static constexpr std::size_t kPieceSize = 256;

  /// Reads how the C library writes a decimal point at the moment.
  RowText();

  /// Begins the next piece; at most kMostPieces in a line.
  RowText& piece() noexcept;
  RowText& text(std::string_view text) noexcept;
  RowText& blanks(std::size_t count) noexcept;
  /// As "%-[width].[width]s": cut to the width, and up to its first zero byte.
  RowText& left(std::string_view text, std::size_t width) noexcept;
  /// As "%[width]ld".
  RowText& integer(long number, std::size_t width) noexcept;
  /// As "%[width].2f".
  RowText& fixed(double number, std::size_t width) noexcept;
  /// Appends the line to `out`, and begins the next.
  void endLine(std::string& out);

  /// A field of a fixed width that is put together from several parts, cut to the width.
  class Field {
   public:
    Field(RowText& row, std::size_t width) noexcept : row_(row), rest_(width) {}
    ~Field() { row_.blanks(rest_); }
    Field(const Field&) = delete;  // pads once
    Field& operator=(const Field&) = delete;

    Field& text(std::string_view text) noexcept;
    Field& integer(long number) noexcept;

   private:
    RowText& row_;
    std::size_t rest_;
  };

 private:
  static constexpr std::size_t kMostPieces = 16;

  RowText& right(std::string_view text, std::size_t width) noexcept;

  std::array<char, kMostPieces * kPieceSize> text_;
  std::size_t size_ = 0;
  std::size_t end_ = 0;  // of the piece
  std::string decimalPoint_;
};

}  // namespace kelvar_2_1_7
