#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Formats.h"
#include "Output.h"
#include "text/CsvText.h"

namespace kelvar_tool {

namespace {

std::vector<const Column*> everyColumn() {
  std::vector<const Column*> columns;
  for (const Column& column : allColumns()) columns.push_back(&column);
  return columns;
}

}  // namespace

std::vector<const Column*> csvColumns(const Selection& selection) {
  return selection.columns.empty() ? everyColumn() : selection.columns;
}

void printCsvRows(PrintedPieces& pieces, const Loaded& loaded, const Selection& selection, std::string_view before) {
  const std::vector<const Column*> columns = csvColumns(selection);
  std::string& out = pieces.text();
  forEachRow(*loaded.data, selection.rows, [&](const Row& row) {
    out += before;
    const std::size_t start = out.size();
    for (const Column* const column : columns) {
      if (column != columns.front()) out += ',';
      appendField(out, column->value(row, column->kind));
    }
    if (before.empty() && out.size() == start) out += "\"\"";  // most readers skip an empty line
    out += kCsvLineEnd;
    pieces.pass();
  });
}

void printCsv(const Loaded& loaded, const Selection& selection) {
  PrintedPieces pieces;
  const char* separator = "";
  for (const Column* const column : csvColumns(selection)) {
    pieces.text() += separator;
    appendField(pieces.text(), column->name);
    separator = ",";
  }
  pieces.text() += kCsvLineEnd;
  printCsvRows(pieces, loaded, selection, {});
  pieces.finish();
}

}  // namespace kelvar_tool
