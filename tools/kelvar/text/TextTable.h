#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Terminal.h"

namespace kelvar_tool {

/// A table that fits the width of the terminal by cutting or hiding columns.
class TextTable {
 public:
  /// Where a text that is too long is cut: before the number that it ends with, which tells it from others; or, where
  /// hardly more than its first word is left, behind that word.
  enum class Cut { end, beginning, beforeNumber, behindWord };
  struct Column {
    std::string heading;
    bool right = false;  ///< right-aligned, for numbers
    bool hidden = false;
    Cut cut = Cut::end;
  };
  struct Cell {
    std::string text;  ///< must be visible()
    Paint paint = Paint::plain;
  };
  /// One step to make the table narrower: cuts a column to `width` terminal columns, or hides it if that is 0.
  struct Step {
    std::size_t column;
    std::size_t width;
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Requires as many cells as columns.
  void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  /// Hides columns without any text, then takes `steps` one after the other until the table fits.
  [[nodiscard]] std::string text(const Terminal& terminal, const std::vector<Step>& steps);

 private:
  [[nodiscard]] std::size_t total() const;
  void appendLine(std::string& out, const std::vector<Cell>& cells, const Terminal& terminal) const;

  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
  std::vector<std::size_t> widths_;
};

}  // namespace kelvar_tool
