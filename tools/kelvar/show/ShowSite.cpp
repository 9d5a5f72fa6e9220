#include "ShowSite.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "Diagnosis.h"
#include "Figures.h"
#include "Margin.h"
#include "Messages.h"
#include "Names.h"
#include "Output.h"
#include "ShowTable.h"
#include "SiteHistory.h"
#include "SiteSearch.h"
#include "Staleness.h"
#include "text/TextTable.h"

namespace kelvar_tool {

namespace {

using digestio::SummaryDataKind;
using kelvar_page::Model;
using kelvar_page::Site;
using kelvar_page::timeText;

constexpr int kAround = 3;  // lines of source before and after a site

std::string join(const std::vector<std::string>& texts, const char* separator) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : separator) + text;
  return all;
}

void printSection(const Terminal& terminal, const std::string& title, const std::string& text) {
  if (!text.empty()) print("\n" + painted(terminal, Paint::bold, title) + "\n" + text);
}

// ---- the source

/// The lines `first` to `last` of a file, with their times on the left and notes on the right.
std::string sourceText(const Model& model, const std::string& file, int first, int last, const Terminal& terminal) {
  const auto* const lines = model.sources.linesOf(file);
  if (!lines) {
    return "  not found below '" + visible(model.sources.root()) + "': --source-root names where sources are\n";
  }
  const auto margin = marginOf(model, file);
  const kelvar_page::TimeUnit& unit = model.units.survey;
  TextTable table({{"Time", true}, {"Share", true}, {"On line", true}, {"Line", true}, {"Source"}, {"What is known"}});
  const auto end = static_cast<int>(std::min<std::size_t>(lines->size(), std::numeric_limits<int>::max()));
  for (int number = std::max(first, 1); number <= std::min(last, end); ++number) {
    const auto known = margin.find(number);
    const bool any = known != margin.end();
    const bool race = any && std::any_of(known->second.notes.begin(), known->second.notes.end(),
                                         [](const std::string& note) { return note.starts_with("race"); });
    std::string source = (*lines)[static_cast<std::size_t>(number) - 1];
    for (std::size_t tab = 0; (tab = source.find('\t', tab)) != std::string::npos;) source.replace(tab, 1, "    ");
    table.add({{any && known->second.time ? timeText(*known->second.time, unit) : ""},
               {any && known->second.share ? kelvar_page::shareText(*known->second.share) : "", Paint::warning},
               {any && known->second.own ? timeText(*known->second.own, unit) : ""},
               {std::to_string(number), Paint::dim},
               {visible(source), any ? Paint::bold : Paint::plain},
               {any ? visible(join(known->second.notes, "; ")) : "", race ? Paint::bad : Paint::dim}});
  }
  return table.text(terminal, {{5, 24}, {4, 40}, {5, 12}, {4, 20}});
}

// ---- one site

struct Fact {
  std::string name;
  std::string value;
};

std::vector<Fact> factsOf(const Model& model, const Site& site, SummaryDataKind kind) {
  std::vector<Fact> facts;
  const auto add = [&](const char* name, std::string value) { facts.push_back({name, std::move(value)}); };
  switch (kind) {
    case digestio::kSurvey:
      if (site.surveyTime) add("time", timeText(*site.surveyTime, model.units.survey));
      if (const auto share = model.overview.shareOf(site)) add("share of the program", kelvar_page::shareText(*share));
      if (const auto own = model.overview.ownTimeOf(site)) add("own time", timeText(*own, model.units.of(site)));
      break;
    case digestio::kSurveyVectorization:
      add("vectorised", vectorisedText(site, model.evidence));
      break;
    case digestio::kSuitability:
      if (site.suitabilityTime) add("time", timeText(*site.suitabilityTime, model.units.suitability));
      if (site.gain) add("program as a whole", kelvar_page::gainText(*site.gain) + " as fast at most");
      if (site.siteGain) add("site by itself", kelvar_page::gainText(*site.siteGain) + " as fast at most");
      if (site.cores > 0) add("cores", std::to_string(site.cores));
      break;
    case digestio::kCorrectness:
      if (site.races) add("races", std::to_string(*site.races));
      add("lock orders", std::to_string(site.lockOrders));
      add("other findings", std::to_string(site.otherFindings));
      break;
    case digestio::kMap:
      for (int sort = 0; site.strides && sort < 3; ++sort) {
        add(kelvar_page::strideName(sort),
            kelvar_page::countText((*site.strides)[static_cast<std::size_t>(sort)]) + " steps");
      }
      break;
  }
  return facts;
}

std::string analysisText(const Model& model, const Site& site, SummaryDataKind kind, const Terminal& terminal) {
  std::string out =
      paragraph(std::string("  ") + kelvar_page::analysisName(kind) + ": ", visible(whyMatched(site, kind)), terminal);
  if (!site.details[kind]) return out;
  for (const Fact& fact : factsOf(model, site, kind)) {
    out += paragraph("    " + fact.name + std::string(fact.name.size() < 21 ? 21 - fact.name.size() : 1, ' '),
                     visible(fact.value), terminal);
  }
  return out;
}

std::string evidenceText(const Model& model, const Site& site, const Terminal& terminal) {
  std::string out;
  for (const kelvar_page::Evidence* const line : model.evidence.of(site)) {
    std::string text = kelvar_page::evidenceName(line->kind) + ": " + line->text;
    if (!line->object.empty()) text += ", on " + line->object;
    if (const std::string count = countText(*line, model.units.survey); !count.empty()) text += " (" + count + ")";
    out += paragraph("  ", visible(text), terminal);
    for (const kelvar_page::EvidencePlace& place : line->places) {
      std::string where = place.role.empty() ? "" : place.role + " at ";
      where += place.file + (place.line != 0 ? ":" + std::to_string(place.line) : "");
      if (!place.function.empty()) where += " in " + place.function;
      out += paragraph("      ", visible(where), terminal);
    }
  }
  return out;
}

std::string historyText(const Pieces& pieces, const Site& site) {
  if (site.handle == 0 || pieces.annotations.empty()) return {};
  std::string out;
  for (const kelvar_platform::SiteEdit& edit :
       kelvar_platform::siteHistory(pieces.annotations, static_cast<std::int64_t>(site.handle))) {
    const kelvar_platform::Site& now = edit.site;
    out += "  edit " + std::to_string(edit.revision) + ": ";
    out += now.alive ? std::string(sitenotes::annotation_t::display(now.kind)) + " '" + visible(now.label) + "' at " +
                           visible(now.file) + ":" + std::to_string(now.line)
                     : "removed";
    out += now.alive && now.disabled ? ", disabled\n" : "\n";
  }
  return out;
}

void printSite(const Model& model, const Pieces& pieces, const Site& site, const Terminal& terminal) {
  const kelvar_page::Region& region = model.overview.regionOf(site);
  std::string title = visible(site.label.empty() ? "(no label)" : site.label) + ": " + kindName(site);
  if (site.handle != 0) title += ", site " + std::to_string(site.handle);
  title += ", " + visible(kelvar_page::placeText(site.place));
  if (region.lastLine > site.place.get_line()) title += "-" + std::to_string(region.lastLine);
  print(painted(terminal, Paint::bold, title) + "\n");
  if (const auto stale = stalenessOf(site, model.overview, model.sources)) {
    print(painted(terminal, Paint::warning,
                  paragraph("", std::string(1, stale->mark) + " stale: " + visible(stale->why), terminal)));
  }
  const int last = std::max(region.lastLine, site.place.get_line());
  if (!site.place.is_null()) {
    const int shownLast = std::min(last, site.place.get_line() + 200) + kAround;
    printSection(
        terminal, "Source",
        sourceText(model, site.place.get_file().get_text(), site.place.get_line() - kAround, shownLast, terminal));
  }
  std::string analyses;
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) analyses += analysisText(model, site, kind, terminal);
  printSection(terminal, "Analyses", analyses);
  printSection(terminal, "Evidence", evidenceText(model, site, terminal));
  printSection(terminal, "Edits", historyText(pieces, site));
}

void printFile(const Model& model, const std::string& file, const Terminal& terminal) {
  std::vector<Site> rows;
  for (Site& site : shownRows(model, true)) {
    if (model.overview.spellingOf(site.place.get_file().get_text()) == file) rows.push_back(std::move(site));
  }
  print(painted(terminal, Paint::bold, visible(file)) + "\n\n" + tableText(model, rows, terminal));
  printSection(terminal, "Source", sourceText(model, file, 1, std::numeric_limits<int>::max(), terminal));
}

}  // namespace

void showSite(const Model& model, const Pieces& pieces, const std::string& name, const Terminal& terminal) {
  const kelvar_page::Named meant = named(model, name);
  if (!meant.file.empty()) return printFile(model, meant.file, terminal);
  if (meant.sites.empty()) {
    throw UsageError("SITE: expected the label or the number of a site, FILE:LINE or FILE, not " + inQuotes(name) +
                     proposal(name, labelsOf(model)));
  }
  bool first = true;
  for (const Site& site : meant.sites) {
    if (!first) print("\n");
    first = false;
    printSite(model, pieces, site, terminal);
  }
}

}  // namespace kelvar_tool
