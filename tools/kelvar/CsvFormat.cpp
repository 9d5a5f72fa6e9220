#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "CsvText.h"
#include "Formats.h"
#include "Output.h"

namespace kelvar_tool {

namespace {

std::vector<const Column*> everyColumn() {
  std::vector<const Column*> columns;
  for (const Column& column : allColumns()) columns.push_back(&column);
  return columns;
}

}  // namespace

void printCsv(const Loaded& loaded, const Selection& selection) {
  const std::vector<const Column*> columns = selection.columns.empty() ? everyColumn() : selection.columns;
  PrintedPieces pieces;
  std::string& out = pieces.text();
  const char* separator = "";
  for (const Column* const column : columns) {
    out += separator;
    appendField(out, column->name);
    separator = ",";
  }
  out += kCsvLineEnd;

  forEachRow(*loaded.data, selection.rows, [&](const Row& row) {
    const std::size_t start = out.size();
    for (const Column* const column : columns) {
      if (column != columns.front()) out += ',';
      appendField(out, column->value(row, column->kind));
    }
    if (out.size() == start) out += "\"\"";  // most readers skip an empty line
    out += kCsvLineEnd;
    pieces.pass();
  });
  pieces.finish();
}

}  // namespace kelvar_tool
