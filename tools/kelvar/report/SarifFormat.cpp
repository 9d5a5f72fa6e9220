#include <array>
#include <filesystem>
#include <set>
#include <string>
#include <utility>

#include "Figures.h"
#include "Formats.h"
#include "Output.h"
#include "PageJson.h"
#include "Staleness.h"

namespace kelvar_tool {

namespace {

using kelvar_page::EvidenceKind;
using kelvar_page::Model;
using kelvar_page::PageJson;
using kelvar_page::Site;
using kelvar_page::SiteSort;

constexpr double kHot = 0.1;  // the share of the time from which a scalar loop is reported

struct Rule {
  const char* id;
  const char* level;
  const char* text;
};
enum Rules : std::size_t { kRace, kLockOrder, kScalar, kStaleSite };
constexpr std::array kRules{
    Rule{"race", "error", "Threads race for the same memory in this site."},
    Rule{"lock-order", "warning", "Locks are taken in orders that can block each other."},
    Rule{"missed-vectorization", "note", "A loop that takes a tenth of the time or more is not vectorised."},
    Rule{"stale-site", "note", "Results are of another version of this site."},
};

// A URI reference after RFC 3986: special characters of the path are escaped, byte by byte.
std::string uriOf(const std::string& file) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri = file.starts_with('/') ? "file://" : "";
  const std::filesystem::path normal = std::filesystem::path(file).lexically_normal();
  for (const char c : normal.native()) {
    const auto byte = static_cast<unsigned char>(c);
    if (kPlain.find(c) != std::string_view::npos) {
      uri += c;
    } else {
      uri += {'%', kDigits[byte >> 4], kDigits[byte & 0xf]};
    }
  }
  return uri;
}

void writePhysical(PageJson& json, const std::string& file, int line, int column) {
  json.beginObject("physicalLocation").beginObject("artifactLocation").text("uri", uriOf(file)).endObject();
  if (line > 0) {
    json.beginObject("region").number("startLine", std::int64_t{line});
    if (column > 0) json.number("startColumn", std::int64_t{column});
    json.endObject();
  }
  json.endObject();
}

void writeRelated(PageJson& json, const kelvar_page::Evidence& line) {
  std::int64_t id = 0;
  json.beginList("relatedLocations");
  for (const kelvar_page::EvidencePlace& place : line.places) {
    json.beginObject().number("id", ++id);
    writePhysical(json, place.file, place.line, place.column);
    std::string text = place.role.empty() ? "here" : place.role;
    if (!place.function.empty()) text += " in " + place.function;
    json.beginObject("message").text("text", text).endObject().endObject();
  }
  json.endList();
}

class Results {
 public:
  Results(PageJson& json, const Model& model) : json_(json), model_(model) {}

  void add(const Site& site) {
    if (isEnd(site) || site.place.get_file().empty()) return;
    if (site.races.value_or(0) > 0) {
      write(site, kRace, named(site) + " has " + kelvar_page::counted(*site.races, "race", "races"),
            EvidenceKind::race);
    }
    if (site.lockOrders > 0) {
      write(site, kLockOrder, named(site) + ": " + kelvar_page::counted(site.lockOrders, "lock order", "lock orders"),
            EvidenceKind::lockOrder);
    }
    addScalar(site);
    if (const auto stale = stalenessOf(site, model_.overview, model_.sources)) {
      write(site, kStaleSite, named(site) + " is stale: " + stale->why, EvidenceKind::share);
    }
  }

 private:
  static std::string named(const Site& site) {
    return site.label.empty() ? kindName(site) : kindName(site) + " '" + site.label + "'";
  }

  // A loop is reported once, under its site's name if it has one: printSarif adds annotated sites first.
  void addScalar(const Site& site) {
    const double share = model_.overview.shareOf(site).value_or(0);
    if (site.vectorised != kelvar_page::Vectorised::no || share < kHot) return;
    if (!scalar_.emplace(site.place.get_file().get_text(), site.place.get_line()).second) return;
    std::string text = named(site) + " takes " + kelvar_page::shareText(share) + " of the time and is not vectorised";
    const auto* const why = model_.evidence.first(site, EvidenceKind::missed);
    if (const std::string reason = why ? kelvar_page::reasonText(*why) : ""; !reason.empty()) text += ": " + reason;
    write(site, kScalar, text, EvidenceKind::missed);
  }

  void write(const Site& site, Rules rule, const std::string& text, EvidenceKind kind) {
    const kelvar_page::Evidence* const line = kind == EvidenceKind::share ? nullptr : model_.evidence.first(site, kind);
    std::string message = text;
    if (line && (kind == EvidenceKind::race || kind == EvidenceKind::lockOrder)) {
      message += ": " + line->text + (line->object.empty() ? "" : ", on " + line->object);
    }
    json_.beginObject().text("ruleId", kRules[rule].id).number("ruleIndex", static_cast<std::int64_t>(rule));
    json_.text("level", kRules[rule].level);
    json_.beginObject("message").text("text", message + ".").endObject();
    json_.beginList("locations").beginObject();
    writePhysical(json_, site.place.get_file().get_text(), site.place.get_line(), site.place.get_column());
    json_.endObject().endList();
    if (line && !line->places.empty()) writeRelated(json_, *line);
    // An annotated site keeps its sequence when it moves; others are identified by their labels.
    const std::string print = site.handle != 0
                                  ? "site " + std::to_string(site.handle)
                                  : kindName(site) + " " + site.label + " " + site.place.get_file().get_leaf();
    json_.beginObject("partialFingerprints")
        .text("kelvarSite/v1", std::string(kRules[rule].id) + " " + print)
        .endObject();
    json_.endObject();
  }

  PageJson& json_;
  const Model& model_;
  std::set<std::pair<std::string, int>> scalar_;
};

void writeTool(PageJson& json) {
  json.beginObject("tool")
      .beginObject("driver")
      .text("name", "kelvar")
      .text("version", KELVAR_VERSION)
      .beginList("rules");
  for (const Rule& rule : kRules) {
    json.beginObject().text("id", rule.id).beginObject("shortDescription").text("text", rule.text).endObject();
    json.beginObject("defaultConfiguration").text("level", rule.level).endObject().endObject();
  }
  json.endList().endObject().endObject();
}

}  // namespace

void printSarif(const Loaded& loaded, const Selection& selection) {
  PageJson json;
  json.beginObject().text("$schema", "https://json.schemastore.org/sarif-2.1.0.json").text("version", "2.1.0");
  json.beginList("runs").beginObject();
  writeTool(json);
  json.text("columnKind", "unicodeCodePoints").beginList("results");
  Results results(json, *selection.model);
  for (const bool annotated : {true, false}) {
    forEachRow(*loaded.data, selection.rows, [&](const Row& row) {
      const Site site = kelvar_page::siteOf(row.item);
      if ((site.sort == SiteSort::annotated) == annotated) results.add(site);
    });
  }
  json.endList().endObject().endList().endObject();
  print(json.json() + "\n");
}

}  // namespace kelvar_tool
