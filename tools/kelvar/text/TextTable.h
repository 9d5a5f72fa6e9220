#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Terminal.h"

namespace kelvar_tool {

/// A table that fits itself to a width: what matters least goes or is cut first.
class TextTable {
 public:
  /// Where a text that is too long is cut: before the number that it ends with, which tells it from others; or, where
  /// hardly more than its first word is left, behind that word.
  enum class Cut { end, beginning, beforeNumber, behindWord };
  struct Column {
    std::string heading;
    bool right = false;  ///< numbers
    bool hidden = false;
    Cut cut = Cut::end;
  };
  struct Cell {
    std::string text;  ///< visible
    Paint paint = Paint::plain;
  };
  /// How to become narrower: a column is cut to so many columns of the terminal, or goes where that is 0.
  struct Step {
    std::size_t column;
    std::size_t width;
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// As many cells as columns.
  void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  /// Columns in which no row has anything go; then `steps` are taken, one after the other, until the rest fits.
  [[nodiscard]] std::string text(const Terminal& terminal, const std::vector<Step>& steps);

 private:
  [[nodiscard]] std::size_t total() const;
  void appendLine(std::string& out, const std::vector<Cell>& cells, const Terminal& terminal) const;

  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
  std::vector<std::size_t> widths_;
};

}  // namespace kelvar_tool
