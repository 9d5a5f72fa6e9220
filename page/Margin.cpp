#include "Margin.h"

#include <algorithm>

#include "Figures.h"

namespace kelvar_page {

namespace {

void note(LineFigures& line, const std::string& text) {
  if (std::find(line.notes.begin(), line.notes.end(), text) == line.notes.end()) line.notes.push_back(text);
}

const char* loopNote(const Site& site) {
  if (!site.vectorised) return "loop";
  return *site.vectorised == Vectorised::no ? "loop, not vectorised" : "vectorised loop";
}

void addRow(std::map<int, LineFigures>& lines, const Model& model, const Site& site) {
  LineFigures& line = lines[site.place.get_line()];
  if (site.time && (!line.time || *site.time > *line.time)) {
    line.time = site.time;
    line.share = model.overview.shareOf(site);
  }
  if (site.sort == SiteSort::annotated) note(line, kindName(site) + " '" + site.label + "'");
  if (site.sort == SiteSort::function) note(line, "function " + site.label);
  if (site.sort == SiteSort::loop) note(line, loopNote(site));
}

// Files are compared by their names without folders, as the library does.
void addPlaces(std::map<int, LineFigures>& lines, const Model& model, const Site& site, const toolbelt::path_t& file) {
  for (const Evidence* const found : model.evidence.of(site)) {
    if (found->kind != EvidenceKind::race && found->kind != EvidenceKind::lockOrder) continue;
    for (const EvidencePlace& place : found->places) {
      if (toolbelt::path_t(place.file).compare_leaf(file) != 0 || place.line == 0) continue;
      const std::string what = evidenceName(found->kind);
      note(lines[place.line], place.role.empty() ? what : what + ": " + place.role);
    }
  }
}

}  // namespace

std::map<int, LineFigures> marginOf(const Model& model, const std::string& file) {
  std::map<int, LineFigures> lines;
  for (kelvar::SummaryItem* const item : model.overview.rowsIn(file)) {
    const Site site = siteOf(*item);
    if (!isEnd(site)) addRow(lines, model, site);
    addPlaces(lines, model, site, toolbelt::path_t(file));
  }
  for (const auto& [line, time] : model.evidence.lineTimesIn(toolbelt::path_t(file))) lines[line].own = time;
  return lines;
}

}  // namespace kelvar_page
