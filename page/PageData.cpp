#include "PageData.h"

#include <algorithm>
#include <array>
#include <set>

#include "Diagnosis.h"
#include "Figures.h"
#include "Margin.h"
#include "SiteHistory.h"
#include "Staleness.h"
#include "TimeTree.h"

namespace kelvar_page {

namespace {

using digestio::SummaryDataKind;
using sitenotes::annotation_t;

constexpr std::size_t kMostLines = 20000;  // of a source

std::string optionalText(const std::optional<double>& value, std::string (*text)(double)) {
  return value ? text(*value) : std::string();
}

std::string optionalTime(const std::optional<double>& time, const TimeUnit& unit) {
  return time ? timeText(*time, unit) : std::string();
}

std::string strideCount(const Site& site, std::size_t sort) {
  return site.strides ? countText((*site.strides)[sort]) : std::string();
}

std::string ownText(const Site& site, const Model& model) {
  const auto own = model.overview.ownTimeOf(site);
  const double whole = model.overview.wholeTime();
  return own && whole > 0 ? shareText(*own / whole) : std::string();
}

std::string firstWord(const std::string& text) {
  return text.substr(0, text.find(':'));
}

/// A text of a row.
struct Field {
  const char* name;
  std::string (*text)(const Site& site, const Model& model);
  bool shared = false;  // many rows have the same text, so it is stored once
};
constexpr std::array kTexts{
    Field{"key", [](const Site& site, const Model&) { return keyOf(site); }},
    Field{"label", [](const Site& site, const Model&) { return site.label; }},
    Field{"kind", [](const Site& site, const Model&) { return kindName(site); }},
    Field{"file", [](const Site& site, const Model&) { return site.place.get_file().get_text(); }, true},
    Field{"where", [](const Site& site, const Model&) { return shortPlace(site.place); }},
    Field{"time", [](const Site& site, const Model& model) { return optionalTime(site.time, model.units.of(site)); }},
    Field{"share",
          [](const Site& site, const Model& model) { return optionalText(model.overview.shareOf(site), shareText); }},
    Field{"own", ownText},
    Field{"vectorised",
          [](const Site& site, const Model& model) { return firstWord(vectorisedText(site, model.evidence)); }},
    Field{"reason", [](const Site& site, const Model& model) { return vectorisedText(site, model.evidence); }, true},
    Field{"gain", [](const Site& site, const Model&) { return optionalText(site.gain, gainText); }},
    Field{"siteGain", [](const Site& site, const Model&) { return optionalText(site.siteGain, gainText); }},
    Field{"cores",
          [](const Site& site, const Model&) { return site.cores > 0 ? std::to_string(site.cores) : std::string(); }},
    Field{"races", [](const Site& site, const Model&) { return racesText(site); }},
    Field{"lockOrders",
          [](const Site& site, const Model&) { return site.races ? countText(site.lockOrders) : std::string(); }},
    Field{"others",
          [](const Site& site, const Model&) { return site.races ? countText(site.otherFindings) : std::string(); }},
    Field{"stride", [](const Site& site, const Model&) { return strideText(site); }},
    Field{"unit", [](const Site& site, const Model&) { return strideCount(site, 0); }},
    Field{"constant", [](const Site& site, const Model&) { return strideCount(site, 1); }},
    Field{"varying", [](const Site& site, const Model&) { return strideCount(site, 2); }},
    Field{"surveyTime",
          [](const Site& site, const Model& model) { return optionalTime(site.surveyTime, model.units.survey); }},
    Field{"suitabilityTime",
          [](const Site& site, const Model& model) {
            return optionalTime(site.suitabilityTime, model.units.suitability);
          }},
};

void writeFinding(PageJson& json, const Finding& finding) {
  json.beginObject().text("rule", finding.rule).text("sentence", finding.sentence);
  json.text("key", finding.site ? keyOf(*finding.site) : "").endObject();
}

// ---- the tree of times

void writeNodes(PageJson& json, const std::vector<TimeNode>& nodes, const TimeUnit& unit) {
  constexpr std::size_t kMost = 40;  // nodes of each level; smaller boxes are too small to see
  json.beginList("within");
  for (std::size_t at = 0; at < nodes.size() && at < kMost; ++at) {
    const TimeNode& node = nodes[at];
    json.beginObject().text("key", node.key).text("label", node.label).number("time", node.time);
    json.text("text", timeText(node.time, unit));
    if (node.races) json.flag("races", true);
    if (!node.within.empty()) {
      json.text("own", timeText(node.own, unit));
      writeNodes(json, node.within, unit);
    }
    json.endObject();
  }
  json.endList();
}

void writeTree(PageJson& json, const Model& model) {
  constexpr std::size_t kMostFiles = 100;
  const TimeUnit& unit = model.units.survey;
  const std::vector<TimeFile> files = timeTreeOf(model.overview);
  double all = 0;
  for (const TimeFile& file : files) all += file.time;
  // The time of a function may also be part of a site elsewhere that calls it, and no row says how much.
  const double twice = all - model.overview.wholeTime();
  json.text("treeTwice", twice > all / 1000 ? timeText(twice, unit) : "").beginList("tree");
  for (std::size_t at = 0; at < files.size() && at < kMostFiles; ++at) {
    const TimeFile& file = files[at];
    json.beginObject().text("file", file.file).number("time", file.time).text("text", timeText(file.time, unit));
    writeNodes(json, file.nodes, unit);
    json.endObject();
  }
  json.endList();
}

// ---- time against gain

void writePoints(PageJson& json, const Model& model) {
  constexpr std::size_t kMost = 300;
  std::vector<Site> sites;
  for (const auto& [name, rows] : model.overview.files()) {
    for (kelvar::SummaryItem* const item : rows) {
      if (item->detailKind() != digestio::kAnnotatedSite || item->suitabilityDetail() == nullptr) continue;
      Site site = siteOf(*item);
      if (!isEnd(site) && site.time && site.gain.value_or(0) > 0) sites.push_back(std::move(site));
    }
  }
  const std::size_t shown = std::min(sites.size(), kMost);
  std::partial_sort(sites.begin(), sites.begin() + static_cast<std::ptrdiff_t>(shown), sites.end(),
                    [](const Site& a, const Site& b) { return *a.time > *b.time; });
  json.beginList("points");
  for (std::size_t at = 0; at < shown; ++at) {
    const Site& site = sites[at];
    json.beginObject().text("key", keyOf(site)).text("label", site.label);
    json.number("share", model.overview.shareOf(site).value_or(0)).number("gain", *site.gain);
    json.text("text", timeText(*site.time, model.units.of(site)) + ", " + gainText(*site.gain));
    json.number("races", site.races.value_or(0)).endObject();
  }
  json.endList();
}

void writeKinds(PageJson& json, const Model& model) {
  std::set<std::string> kinds;
  for (int kind = 0; kind < annotation_t::all_kinds; ++kind) {
    const auto one = static_cast<annotation_t::kind_t>(kind);
    if (model.overview.has(one)) kinds.insert(annotation_t::display(one));
  }
  json.beginList("kinds");
  for (const std::string& kind : kinds) {
    if (!kind.starts_with("end ")) json.text({}, kind);
  }
  json.endList();
}

}  // namespace

kelvar::SummaryItem* itemOf(const Model& model, const std::string& key) {
  const std::string_view rest = key;
  if (rest.starts_with('s')) return model.overview.itemOf(key);
  const std::size_t slash = rest.find('/');
  const std::size_t after = slash == std::string_view::npos ? slash : rest.find('/', slash + 1);
  const std::size_t end = rest.rfind('\n');
  if (after == std::string_view::npos || end == std::string_view::npos || end < after) return nullptr;
  const std::string file(rest.substr(after + 1, end - after - 1));
  const auto in = [&](const std::vector<kelvar::SummaryItem*>& rows) -> kelvar::SummaryItem* {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](kelvar::SummaryItem* item) { return keyOf(siteOf(*item)) == key; });
    return found != rows.end() ? *found : nullptr;
  };
  if (!file.starts_with('#')) return in(model.overview.rowsIn(file));
  for (const auto& [name, rows] : model.overview.files()) {
    if (kelvar::SummaryItem* const found = in(rows)) return found;
  }
  return nullptr;
}

void writeProgram(PageJson& json, const Model& model, const std::string& project) {
  json.text("project", project).number("whole", model.overview.wholeTime());
  json.text("timeSource", model.timeSource);
  json.text("wholeText",
            model.overview.wholeTime() > 0 ? timeText(model.overview.wholeTime(), model.units.survey) : "");
  const double gain = model.data->programMaxGain();
  json.text("gainText", gain > 1 ? gainText(gain) : "").number("rows", model.overview.rows());
  json.flag("annotated", model.overview.anyCurrent());
  json.beginList("findings");
  for (const Finding& finding : model.findings) writeFinding(json, finding);
  json.endList().beginList("complaints");
  for (const std::string& complaint : model.complaints) json.text({}, complaint);
  json.endList();
  writeKinds(json, model);
  json.beginList("analyses");
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    json.flag({}, model.data->summaryDataStatus(kind) != kelvar::kNotPresent);
  }
  json.endList().beginList("fields");
  writeFields(json);
  json.endList();
}

void writePictures(PageJson& json, const Model& model) {
  writeTree(json, model);
  writePoints(json, model);
}

void writeFields(PageJson& json) {
  for (const Field& field : kTexts) json.text({}, field.name);
  for (const char* const name :
       {"line", "handle", "part", "depth", "raceCount", "mark", "word", "why", "match", "sort"})
    json.text({}, name);
}

namespace {

void writeRow(PageJson& json, const Model& model, const Site& site, SharedTexts* shared) {
  const auto write = [&](const std::string& text, bool mayShare) {
    if (shared && mayShare) {
      json.number({}, shared->placeOf(text));
    } else {
      json.text({}, text);
    }
  };
  json.beginList();
  for (const Field& field : kTexts) write(field.text(site, model), field.shared);
  json.number({}, std::int64_t{site.place.get_line()});
  json.number({}, static_cast<std::int64_t>(site.handle));
  json.number({}, model.overview.shareOf(site).value_or(0));
  json.number({}, std::int64_t{model.overview.regionOf(site).depth});
  json.number({}, site.races.value_or(0));
  const auto stale = stalenessOf(site, model.overview, model.sources);
  json.text({}, stale ? std::string(1, stale->mark) : "").text({}, stale ? stale->word : "");
  json.beginList();
  std::string match;
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    match += static_cast<char>('0' + site.match[kind]);
    write(site.details[kind] ? whyMatched(site, kind) : "", true);
  }
  json.endList().text({}, match).number({}, static_cast<std::int64_t>(site.sort)).endList();
}

}  // namespace

void writeRow(PageJson& json, const Model& model, const Site& site) {
  writeRow(json, model, site, nullptr);
}

void writeRow(PageJson& json, const Model& model, const Site& site, SharedTexts& shared) {
  writeRow(json, model, site, &shared);
}

std::int64_t SharedTexts::placeOf(const std::string& text) {
  const auto [place, isNew] = places_.try_emplace(text, static_cast<std::int64_t>(texts_.size()));
  if (isNew) texts_.push_back(&place->first);
  return place->second;
}

void SharedTexts::write(PageJson& json) const {
  json.beginList("texts");
  for (const std::string* const text : texts_) json.text({}, *text);
  json.endList().beginList("shared");
  for (const Field& field : kTexts) {
    if (field.shared) json.text({}, field.name);
  }
  json.text({}, "why").endList();
}

void writeRows(PageJson& json, const Model& model, const RowView& view, int from, int count) {
  const int total = view.size();
  json.beginObject().number("total", std::int64_t{total}).number("from", std::int64_t{from}).beginList("rows");
  for (int index = from; index < total && index - from < count; ++index) writeRow(json, model, siteOf(view.row(index)));
  json.endList().endObject();
}

void writeSite(PageJson& json, const Model& model, const Site& site, const std::string& annotations) {
  json.beginObject().beginList("evidence");
  for (const Evidence* const line : model.evidence.of(site)) {
    json.beginObject().text("kind", evidenceName(line->kind)).text("text", line->text).text("object", line->object);
    json.text("count", countText(*line, model.units.survey)).beginList("places");
    for (const EvidencePlace& place : line->places) {
      json.beginObject().text("role", place.role).text("file", place.file).number("line", std::int64_t{place.line});
      json.text("function", place.function).endObject();
    }
    json.endList().endObject();
  }
  json.endList().beginList("edits");
  if (site.handle != 0 && !annotations.empty()) {
    for (const auto& [revision, now] :
         kelvar_platform::siteHistory(annotations, static_cast<std::int64_t>(site.handle))) {
      const std::string what = now.alive ? std::string(sitenotes::annotation_t::display(now.kind)) + " '" + now.label +
                                               "' at " + now.file + ":" + std::to_string(now.line)
                                         : "removed";
      json.text({}, "edit " + std::to_string(revision) + ": " + what + (now.alive && now.disabled ? ", disabled" : ""));
    }
  }
  json.endList().endObject();
}

bool writeSource(PageJson& json, const Model& model, const std::string& file) {
  if (model.overview.rowsIn(file).empty()) return false;
  const auto* const lines = model.sources.linesOf(file);
  if (!lines) return false;
  json.beginObject().text("file", file).beginList("lines");
  for (std::size_t at = 0; at < lines->size() && at < kMostLines; ++at) json.text({}, (*lines)[at]);
  json.endList().beginObject("margin");
  for (const auto& [line, known] : marginOf(model, file)) {
    json.beginList(std::to_string(line))
        .text({}, optionalTime(known.time, model.units.survey))
        .text({}, optionalText(known.share, shareText))
        .text({}, optionalTime(known.own, model.units.survey));
    for (const std::string& note : known.notes) json.text({}, note);
    json.endList();
  }
  json.endObject().endObject();
  return true;
}

}  // namespace kelvar_page
