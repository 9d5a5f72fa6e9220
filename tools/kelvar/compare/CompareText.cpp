#include <string>

#include "CompareFormats.h"
#include "CompareRows.h"
#include "Output.h"
#include "text/Terminal.h"
#include "text/TextTable.h"

namespace kelvar_tool {

namespace {

std::string line(const std::string& text) {
  return text.empty() ? text : text + '\n';
}

}  // namespace

void printCompareText(const ComparedSides& sides, const std::vector<GateResult>&) {
  constexpr std::size_t kMostRows = 40;  // of either table; programs get all
  const Terminal terminal = outputTerminal(Colour::automatic);
  std::string text;
  std::size_t lines = 0;
  for (const std::string& one : compareHead(sides, terminal)) {
    if (lines++ == 2) text += '\n';  // after the two sides
    text += line(one);
  }
  const ShownSites shown = shownSites(sides, kMostRows);
  if (!shown.changed.empty()) {
    TextTable table(changedColumns());
    for (const kelvar_compare::SiteChange* const site : shown.changed) table.add(changedCells(sides, *site));
    text += '\n' + table.text(terminal, {{10, 0}, {12, 0}, {1, 0}, {2, 16}, {0, 24}, {9, 8}, {2, 0}, {0, 12}}) +
            line(leftOutText(shown.allChanged, shown.changed.size()));
  }
  if (!shown.alone.empty()) {
    TextTable table(aloneColumns());
    for (const kelvar_compare::SiteChange* const site : shown.alone) table.add(aloneCells(sides, *site));
    text += '\n' + painted(terminal, Paint::bold, "On one side only:") + '\n' +
            table.text(terminal, {{2, 0}, {3, 16}, {1, 24}, {3, 0}, {1, 12}}) +
            line(leftOutText(shown.allAlone, shown.alone.size()));
  }
  print(text);
}

}  // namespace kelvar_tool
