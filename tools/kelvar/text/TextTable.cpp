#include "TextTable.h"

#include <algorithm>

#include "Unicode.h"

namespace kelvar_tool {

namespace {

constexpr std::size_t kGap = 2;

std::string fitted(const std::string& text, std::size_t width, TextTable::Cut cut) {
  if (displayWidth(text) <= width) return text;
  if (cut == TextTable::Cut::beforeNumber) {
    const std::size_t blank = text.find_last_not_of("0123456789");
    const std::size_t end = blank != std::string::npos && text[blank] == ' ' ? text.size() - blank : 0;
    if (end > 1 && 2 * end < width) return cutTo(text.substr(0, blank), width - end) + text.substr(blank);
  } else if (cut == TextTable::Cut::behindWord) {
    constexpr std::size_t kTooLittle = 8;
    const std::size_t word = text.find(':');
    if (word != std::string::npos && word <= width && width < word + kTooLittle) return text.substr(0, word);
  }
  return cutTo(text, width, cut == TextTable::Cut::beginning);
}

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
  std::size_t blanks = 0;  // written before the next text, so that no line ends with blanks
  bool first = true;
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    if (columns_[at].hidden) continue;
    if (!first) blanks += kGap;
    first = false;
    const std::string text = fitted(cells[at].text, widths_[at], columns_[at].cut);
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
