#include "TextTable.h"

#include <algorithm>

#include "Unicode.h"

namespace kelvar_tool {

namespace {

constexpr std::size_t kGap = 2;

}  // namespace

std::size_t TextTable::total() const {
  std::size_t sum = 0;
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    if (!columns_[at].hidden) sum += widths_[at] + (sum != 0 ? kGap : 0);
  }
  return sum;
}

std::string TextTable::text(const Terminal& terminal, const std::vector<Step>& steps) {
  widths_.assign(columns_.size(), 0);
  for (const std::vector<Cell>& row : rows_) {
    for (std::size_t at = 0; at < row.size(); ++at) widths_[at] = std::max(widths_[at], displayWidth(row[at].text));
  }
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    columns_[at].hidden = columns_[at].hidden || widths_[at] == 0;
    widths_[at] = std::max(widths_[at], displayWidth(columns_[at].heading));
  }
  for (const Step& step : steps) {
    const std::size_t taken = total();
    if (taken <= terminal.width) break;
    if (step.width == 0) {
      columns_[step.column].hidden = true;
      continue;
    }
    const std::size_t spare = taken - terminal.width;
    std::size_t& width = widths_[step.column];
    width = std::max(std::min(width, step.width), width > spare ? width - spare : 0);
  }
  std::string out;
  std::vector<Cell> header;
  for (const Column& column : columns_) header.push_back({.text = column.heading, .paint = Paint::bold});
  appendLine(out, header, terminal);
  for (const std::vector<Cell>& row : rows_) appendLine(out, row, terminal);
  return out;
}

void TextTable::appendLine(std::string& out, const std::vector<Cell>& cells, const Terminal& terminal) const {
  std::size_t blanks = 0;  // kept back, so that no line ends with any
  bool first = true;
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    if (columns_[at].hidden) continue;
    if (!first) blanks += kGap;
    first = false;
    const std::string text = cutTo(cells[at].text, widths_[at], columns_[at].keepEnd);
    const std::size_t filler = widths_[at] - std::min(widths_[at], displayWidth(text));
    if (columns_[at].right) blanks += filler;
    if (!text.empty()) {
      out.append(blanks, ' ');
      blanks = 0;
      out += painted(terminal, cells[at].paint, text);
    }
    if (!columns_[at].right) blanks += filler;
  }
  out += '\n';
}

}  // namespace kelvar_tool
