#include "ComparePage.h"

#include "CompareRows.h"
#include "PageJson.h"

namespace kelvar_tool {

namespace {

using kelvar_compare::SiteChange;

using CellsOf = std::vector<TextTable::Cell> (*)(const ComparedSides& sides, const SiteChange& site);

const char* toneOf(Paint paint) {
  return paint == Paint::good ? "good" : paint == Paint::bad ? "bad" : paint == Paint::dim ? "soft" : "";
}

/// The page's key of the site in BEFORE; empty when it has none.
std::string keyOf(const ComparedSides& sides, const SiteChange& site) {
  if (site.before == SiteChange::kNone) return {};
  const unsigned long sequence = sides.before.sites()[site.before].identity.sequence;
  return sequence == 0 ? std::string() : "s" + std::to_string(sequence);
}

void writeTable(kelvar_page::PageJson& json, const char* key, const ComparedSides& sides,
                const std::vector<TextTable::Column>& columns, const std::vector<const SiteChange*>& sites,
                CellsOf cellsOf, const std::string& more) {
  json.beginObject(key).beginList("columns");
  for (const TextTable::Column& column : columns) {
    json.beginObject().text("title", column.heading).flag("right", column.right).endObject();
  }
  json.endList().beginList("rows");
  for (const SiteChange* const site : sites) {
    json.beginObject().text("key", keyOf(sides, *site)).beginList("cells");
    for (const TextTable::Cell& cell : cellsOf(sides, *site)) {
      json.beginObject().text("text", cell.text).text("tone", toneOf(cell.paint)).endObject();
    }
    json.endList().endObject();
  }
  json.endList().text("more", more).endObject();
}

}  // namespace

std::string comparePage(const ComparedSides& sides) {
  constexpr std::size_t kMostRows = 200;
  const ShownSites shown = shownSites(sides, kMostRows);
  kelvar_page::PageJson json;
  json.beginObject().beginList("lines");
  for (const std::string& line : compareHead(sides, Terminal())) json.text({}, line);
  json.endList();
  writeTable(json, "changed", sides, changedColumns(), shown.changed, changedCells,
             leftOutText(shown.allChanged, shown.changed.size()));
  writeTable(json, "alone", sides, aloneColumns(), shown.alone, aloneCells,
             leftOutText(shown.allAlone, shown.alone.size()));
  json.endObject();
  return json.json();
}

}  // namespace kelvar_tool
