#include "CompareFormats.h"

#include <cmath>
#include <optional>
#include <string>

#include "Output.h"
#include "RankTest.h"
#include "text/CsvText.h"
#include "text/JsonText.h"

namespace kelvar_tool {

namespace {

using kelvar_compare::SiteChange;
using kelvar_compare::State;
using kelvar_compare::Turn;

constexpr std::int64_t kSchemaVersion = 1;

Cell countCell(std::size_t count) {
  return static_cast<std::int64_t>(count);
}

/// Values that are not finite become null.
void writeWhole(JsonText& json, const kelvar_compare::Comparison& comparison, bool oneTimeSource) {
  const kelvar_compare::TimeChange& whole = comparison.whole;
  json.beginObject("whole");
  json.value("verdict", std::string(nameOf(whole.verdict)));
  json.value("of", comparison.wholeOf ? Cell(std::string(nameOf(*comparison.wholeOf))) : Cell());
  json.value("before", whole.before);
  json.value("after", whole.after);
  json.value("changePercent", 100 * whole.change);
  json.value("p", whole.p);
  json.value("oneTimeSource", oneTimeSource);
  json.endObject();
}

void writeSide(JsonText& json, std::string_view key, const kelvar_compare::Side& side,
               std::optional<kelvar_compare::WholeOf> wholeOf, const std::set<std::string>& timeSources) {
  const std::vector<double> wholes = side.wholes(wholeOf);
  json.beginObject(key);
  json.value("sites", countCell(side.sites().size()));
  json.beginList("timeSources");
  for (const std::string& source : timeSources) json.value({}, source);
  json.endList();
  json.beginList("runs");
  for (std::size_t run = 0; run < side.runs(); ++run) {
    json.beginObject({});
    json.value("path", side.names()[run]);
    json.value("time", wholes[run]);
    json.endObject();
  }
  json.endList();
  json.endObject();
}

void writeTest(JsonText& json, const ComparedSides& sides) {
  json.beginObject("test");
  json.value("possible", sides.comparison.tested);
  json.value("leastRuns", countCell(kelvar_compare::kLeastRuns));
  json.value("thresholdPercent", 100 * sides.comparison.threshold);
  json.value("leastSharePercent", 100 * kelvar_compare::Settings::kLeastShare);
  json.endObject();
}

void writeCounts(JsonText& json, const kelvar_compare::Comparison& comparison) {
  const auto count = [&](const char* key, bool (*is)(const SiteChange&)) {
    json.value(key, countCell(comparison.count(is)));
  };
  json.beginObject("counts");
  count("gone", [](const SiteChange& site) { return site.state == State::gone; });
  count("new", [](const SiteChange& site) { return site.state == State::added; });
  count("changed", [](const SiteChange& site) { return site.state == State::changed; });
  count("unchanged", [](const SiteChange& site) { return site.state == State::unchanged; });
  count("slower", [](const SiteChange& site) { return site.time.verdict == kelvar_compare::Verdict::slower; });
  count("faster", [](const SiteChange& site) { return site.time.verdict == kelvar_compare::Verdict::faster; });
  count("becameVectorized", [](const SiteChange& site) { return site.vectorisation == Turn::came; });
  count("ceasedToBeVectorized", [](const SiteChange& site) { return site.vectorisation == Turn::went; });
  count("racesCame", [](const SiteChange& site) { return site.races == Turn::came; });
  count("racesWent", [](const SiteChange& site) { return site.races == Turn::went; });
  json.endObject();
}

void writeGates(JsonText& json, const std::vector<GateResult>& results) {
  json.beginList("gates");
  for (const GateResult& result : results) {
    json.beginObject({});
    json.value("change", std::string(result.gate->name));
    json.value("fell", result.fell());
    json.value("measured", result.lacks.empty());
    json.value("sites", countCell(result.sites));
    json.endObject();
  }
  json.endList();
}

void writeSite(JsonText& json, const ComparedSides& sides, const SiteChange& site) {
  json.beginObject({});
  std::string_view open;
  for (const CompareColumn& column : compareColumns()) {
    const std::size_t dot = column.name.find('.');
    const std::string_view group = dot == std::string_view::npos ? std::string_view() : column.name.substr(0, dot);
    const bool absent = (group == "before" && site.before == SiteChange::kNone) ||
                        (group == "after" && site.after == SiteChange::kNone);
    if (group != open) {
      if (!open.empty()) json.endObject();
      open = absent ? std::string_view() : group;
      if (!open.empty()) json.beginObject(open);
    }
    if (absent) continue;
    json.value(dot == std::string_view::npos ? column.name : column.name.substr(dot + 1), column.value(sides, site));
  }
  if (!open.empty()) json.endObject();
  json.endObject();
}

}  // namespace

void printCompareJson(const ComparedSides& sides, const std::vector<GateResult>& results) {
  PrintedPieces pieces;
  JsonText json(pieces.text());
  json.beginObject({});
  json.value("schemaVersion", kSchemaVersion);
  json.beginList("unreadable");
  for (const std::string& complaint : sides.complaints) json.value({}, complaint);
  json.endList();
  writeSide(json, "before", sides.before, sides.comparison.wholeOf, sides.timeSourcesBefore);
  writeSide(json, "after", sides.after, sides.comparison.wholeOf, sides.timeSourcesAfter);
  writeTest(json, sides);
  writeWhole(json, sides.comparison, sides.oneTimeSource());
  writeCounts(json, sides.comparison);
  writeGates(json, results);
  json.beginList("sites");
  for (const SiteChange& site : sides.comparison.sites) {
    writeSite(json, sides, site);
    pieces.pass();
  }
  json.endList();
  json.endObject();
  pieces.text() += '\n';
  pieces.finish();
}

void printCompareCsv(const ComparedSides& sides, const std::vector<GateResult>&) {
  PrintedPieces pieces;
  std::string& out = pieces.text();
  for (const CompareColumn& column : compareColumns()) {
    if (!out.empty()) out += ',';
    out += column.name;
  }
  out += kCsvLineEnd;
  for (const SiteChange& site : sides.comparison.sites) {
    const char* separator = "";
    for (const CompareColumn& column : compareColumns()) {
      out += separator;
      appendField(out, column.value(sides, site));
      separator = ",";
    }
    out += kCsvLineEnd;
    pieces.pass();
  }
  pieces.finish();
}

}  // namespace kelvar_tool
