#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Formats.h"
#include "Output.h"
#include "Unicode.h"

namespace kelvar_tool {

namespace {

// Leading and trailing blanks and control characters may be unquoted, but not every reader preserves them.
bool needsQuotes(std::string_view text) {
  const auto special = [](char c) { return c == '"' || c == ',' || static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
  return text.empty() || text.front() == ' ' || text.back() == ' ' || std::any_of(text.begin(), text.end(), special);
}

void appendText(std::string& out, std::string_view text) {
  if (!needsQuotes(text)) {
    out += text;
    return;
  }
  out += '"';
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

void appendField(std::string& out, const Cell& cell) {
  if (isText(cell)) {
    appendText(out, wellFormed(std::get<std::string>(cell)));
  } else {
    append(out, cell);
  }
}

std::vector<const Column*> everyColumn() {
  std::vector<const Column*> columns;
  for (const Column& column : allColumns()) columns.push_back(&column);
  return columns;
}

}  // namespace

void printCsv(const Loaded& loaded, const Selection& selection) {
  constexpr std::string_view kLineEnd = "\r\n";
  const std::vector<const Column*> columns = selection.columns.empty() ? everyColumn() : selection.columns;
  PrintedPieces pieces;
  std::string& out = pieces.text();
  const char* separator = "";
  for (const Column* const column : columns) {
    out += separator;
    appendText(out, column->name);
    separator = ",";
  }
  out += kLineEnd;

  forEachRow(*loaded.data, selection.rows, [&](const Row& row) {
    const std::size_t start = out.size();
    for (const Column* const column : columns) {
      if (column != columns.front()) out += ',';
      appendField(out, column->value(row, column->kind));
    }
    if (out.size() == start) out += "\"\"";  // most readers skip an empty line
    out += kLineEnd;
    pieces.pass();
  });
  pieces.finish();
}

}  // namespace kelvar_tool
