#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "Formats.h"
#include "Messages.h"
#include "Output.h"
#include "text/Unicode.h"

namespace kelvar_tool {

namespace {

constexpr std::size_t kGap = 2;

struct TableColumn {
  const Column* column;
  std::size_t width;
  bool numbers = false;  // right-aligned
};

// Six significant digits, as exact as measurements are. CSV and JSON have all digits.
void appendCell(std::string& text, const Cell& cell) {
  const double* const number = std::get_if<double>(&cell);
  if (number && std::isfinite(*number)) {
    std::array<char, 32> digits{};
    static_cast<void>(std::snprintf(digits.data(), digits.size(), "%.6g", *number));
    text += digits.data();
  } else {
    append(text, cell);
  }
}

std::string textOf(const Column& column, const Row& row) {
  std::string text;
  appendCell(text, column.value(row, column.kind));
  return escaped(wellFormed(text));
}

std::string headingOf(const Column& column) {
  return std::string(column.heading) + (column.unit.empty() ? "" : " " + std::string(column.unit));
}

bool sameGroup(const TableColumn& a, const TableColumn& b) {
  return a.column->group == b.column->group && a.column->kind == b.column->kind;
}

// The end of the columns from `first` on that have the same group.
std::size_t endOfGroup(const std::vector<TableColumn>& table, std::size_t first) {
  std::size_t end = first + 1;
  while (end < table.size() && sameGroup(table[first], table[end])) ++end;
  return end;
}

std::size_t widthOfGroup(const std::vector<TableColumn>& table, std::size_t first, std::size_t end) {
  std::size_t width = (end - first - 1) * kGap;
  for (std::size_t at = first; at < end; ++at) width += table[at].width;
  return width;
}

// The first of two passes: the widths.
void measure(std::vector<TableColumn>& table, const Loaded& loaded, const RowChoice& choice) {
  std::string text;
  forEachRow(*loaded.data, choice, [&](const Row& row) {
    for (TableColumn& entry : table) {
      const Cell cell = entry.column->value(row, entry.column->kind);
      if (isMissing(cell)) continue;
      entry.numbers = !isText(cell);
      text.clear();
      appendCell(text, cell);
      entry.width = std::max(entry.width, displayWidth(escaped(wellFormed(text))));
    }
  });
  for (std::size_t first = 0; first < table.size();) {
    const std::size_t end = endOfGroup(table, first);
    const std::size_t width = widthOfGroup(table, first, end);
    table[end - 1].width += std::max(table[first].column->group.size(), width) - width;
    first = end;
  }
}

void appendPadded(std::string& line, std::string_view text, std::size_t width, bool right) {
  const std::size_t taken = displayWidth(text);
  const std::size_t filler = width > taken ? width - taken : 0;
  if (right) line.append(filler, ' ');
  line += text;
  if (!right) line.append(filler, ' ');
  line.append(kGap, ' ');
}

void endLine(std::string& line) {
  while (!line.empty() && line.back() == ' ') line.pop_back();
  line += '\n';
}

void appendHeader(std::string& out, const std::vector<TableColumn>& table) {
  std::string groups;
  std::string headings;
  std::string rule;
  for (std::size_t first = 0; first < table.size();) {
    const std::size_t end = endOfGroup(table, first);
    appendPadded(groups, table[first].column->group, widthOfGroup(table, first, end), false);
    first = end;
  }
  for (const TableColumn& entry : table) {
    appendPadded(headings, headingOf(*entry.column), entry.width, entry.numbers);
    rule.append(entry.width, '_');
    rule.append(kGap, ' ');
  }
  for (std::string* const line : {&groups, &headings, &rule}) {
    endLine(*line);
    out += *line;
  }
}

}  // namespace

void printWide(const Loaded& loaded, const Selection& selection) {
  std::vector<TableColumn> table;
  for (const Column* const column :
       selection.columns.empty() ? columnsOfTable(*loaded.data, selection.verbose) : selection.columns) {
    table.push_back({.column = column, .width = headingOf(*column).size()});
  }
  measure(table, loaded, selection.rows);

  PrintedPieces pieces;
  appendHeader(pieces.text(), table);
  std::string line;
  forEachRow(*loaded.data, selection.rows, [&](const Row& row) {
    line.clear();
    for (const TableColumn& entry : table) {
      appendPadded(line, textOf(*entry.column, row), entry.width, entry.numbers);
    }
    endLine(line);
    pieces.text() += line;
    pieces.pass();
  });
  pieces.finish();
}

}  // namespace kelvar_tool
