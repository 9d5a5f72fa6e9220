#include "ShowTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <unordered_map>

#include "Figures.h"
#include "Staleness.h"
#include "text/TextTable.h"
#include "text/Unicode.h"

namespace kelvar_tool {

namespace {

using kelvar_page::Model;
using kelvar_page::Site;
using kelvar_page::SiteSort;

constexpr std::size_t kLongestParagraph = 100;

enum Columns : std::size_t {
  kSite,
  kKind,
  kWhere,
  kTime,
  kShare,
  kBar,
  kOwn,
  kVectorised,
  kGain,
  kSiteGain,
  kRaces,
  kStride,
  kMatch,
};

// What matters least is cut first.
const std::vector<TextTable::Step> kNarrower{
    {kVectorised, 24}, {kKind, 0},   {kSiteGain, 0}, {kVectorised, 12}, {kWhere, 20}, {kSite, 24}, {kBar, 0},
    {kVectorised, 6},  {kWhere, 16}, {kSite, 14},    {kOwn, 0},         {kWhere, 12}, {kSite, 10}, {kMatch, 8}};

std::vector<TextTable::Column> headings() {
  using Cut = TextTable::Cut;
  return {{.heading = "Site", .cut = Cut::beforeNumber},
          {"Kind"},
          {.heading = "Where", .cut = Cut::beginning},
          {"Time", true},
          {"Share", true},
          {""},
          {"Own", true},
          {.heading = "Vector", .cut = Cut::behindWord},
          {"Gain", true},
          {"Of site", true},
          {"Races"},
          {"Stride"},
          {"Match"}};
}

// A bar in eighths of a character cell.
std::string bar(double share) {
  constexpr int kCells = 10;
  static constexpr std::array kParts{"", "\u258f", "\u258e", "\u258d", "\u258c", "\u258b", "\u258a", "\u2589"};
  const int eighths = static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * kCells * 8));
  std::string text;
  for (int cell = 0; cell < eighths / 8; ++cell) text += "\u2588";
  return text + kParts[static_cast<std::size_t>(eighths % 8)];
}

Paint paintOfVectorised(const Site& site, double share) {
  if (!site.vectorised) return Paint::plain;
  if (*site.vectorised == kelvar_page::Vectorised::yes) return Paint::good;
  return share >= 0.1 ? Paint::warning : Paint::plain;
}

std::vector<TextTable::Cell> cellsOf(const Model& model, const Site& site, const Terminal& terminal, int depth) {
  const auto share = model.overview.shareOf(site);
  const auto own = model.overview.ownTimeOf(site);
  const double whole = model.overview.wholeTime();
  const auto stale = stalenessOf(site, model.overview, model.sources);
  const bool races = site.races.value_or(0) > 0;
  const bool nothing = !site.time && !site.races && !site.strides && !site.vectorised;
  std::vector<TextTable::Cell> cells(kMatch + 1);
  cells[kSite] = {
      std::string(static_cast<std::size_t>(2 * depth), ' ') + visible(site.label.empty() ? "(no label)" : site.label),
      site.sort == SiteSort::annotated ? Paint::bold : Paint::plain};
  cells[kKind].text = kindName(site);
  cells[kWhere] = {visible(kelvar_page::shortPlace(site.place)), Paint::dim};
  if (site.time) cells[kTime].text = kelvar_page::timeText(*site.time, model.units.of(site));
  if (share) cells[kShare].text = kelvar_page::shareText(*share);
  if (share && terminal.bars) cells[kBar].text = bar(*share);
  if (own && whole > 0) cells[kOwn].text = kelvar_page::shareText(*own / whole);
  cells[kVectorised] = {visible(vectorisedText(site, model.evidence)), paintOfVectorised(site, share.value_or(0))};
  if (site.gain) cells[kGain].text = kelvar_page::gainText(*site.gain);
  if (site.siteGain) cells[kSiteGain].text = kelvar_page::gainText(*site.siteGain);
  cells[kRaces] = {racesText(site), races ? Paint::bad : Paint::plain};
  cells[kStride].text = strideText(site);
  if (stale) cells[kMatch] = {std::string(1, stale->mark) + " " + visible(stale->word), Paint::warning};
  if (!stale && nothing) cells[kMatch] = {"- no result", Paint::dim};
  return cells;
}

}  // namespace

std::vector<Site> shownRows(const Model& model, bool all) {
  std::vector<Site> rows;
  for (int index = 0; index < model.data->num_items(); ++index) {
    Site site = kelvar_page::siteOf(*model.data->item(index));
    if (!isEnd(site) && (all || site.sort == SiteSort::annotated)) rows.push_back(std::move(site));
  }
  std::unordered_map<unsigned long, std::vector<std::size_t>> within;
  std::unordered_map<unsigned long, bool> shown;
  for (const Site& site : rows) {
    if (site.handle != 0) shown[site.handle] = true;
  }
  std::vector<std::size_t> outermost;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const unsigned long outer = model.overview.regionOf(rows[at]).outer;
    (outer != 0 && shown.contains(outer) ? within[outer] : outermost).push_back(at);
  }
  std::vector<std::size_t> order;
  std::vector<std::size_t> waiting(outermost.rbegin(), outermost.rend());
  while (!waiting.empty()) {
    const std::size_t at = waiting.back();
    waiting.pop_back();
    order.push_back(at);
    const auto inner = rows[at].handle != 0 ? within.find(rows[at].handle) : within.end();
    if (inner == within.end()) continue;
    waiting.insert(waiting.end(), inner->second.rbegin(), inner->second.rend());
    within.erase(inner);  // two rows may be of one site
  }
  std::vector<Site> ordered;
  ordered.reserve(rows.size());
  for (const std::size_t at : order) ordered.push_back(std::move(rows[at]));
  return ordered;
}

std::string tableText(const Model& model, const std::vector<Site>& rows, const Terminal& terminal) {
  TextTable table(headings());
  for (const Site& site : rows) {
    table.add(cellsOf(model, site, terminal, std::min(model.overview.regionOf(site).depth, 8)));
  }
  return table.text(terminal, kNarrower);
}

namespace {

// Where a line may break: at a blank, but not between a number and its unit.
std::size_t breakBehind(const std::string& text, std::size_t from) {
  constexpr std::size_t kLongestUnit = 3;
  std::size_t end = text.find(' ', from);
  if (end == std::string::npos) return text.size();
  const std::size_t behind = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz", end + 1);
  const std::size_t letters = std::min(behind, text.size()) - (end + 1);
  const bool number = text.find_first_not_of("(0123456789.", from) == end;
  if (number && letters > 0 && letters <= kLongestUnit) end = std::min(text.find(' ', end + 1), text.size());
  return end;
}

}  // namespace

std::string paragraph(const std::string& start, const std::string& text, const Terminal& terminal) {
  const std::size_t width = std::min(terminal.width, kLongestParagraph);
  const std::string indent(displayWidth(start), ' ');
  std::string out = start;
  std::size_t column = indent.size();
  bool first = true;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = breakBehind(text, at);
    const std::string word = text.substr(at, end - at);
    const std::size_t taken = displayWidth(word);
    if (!first && column + 1 + taken > width) {
      out += '\n' + indent;
      column = indent.size();
    } else if (!first) {
      out += ' ';
      ++column;
    }
    first = false;
    out += word;
    column += taken;
    at = end + 1;
  }
  return out + '\n';
}

std::string findingsText(const Model& model, const Terminal& terminal) {
  std::string out;
  for (const kelvar_page::Finding& finding : model.findings) {
    out += paragraph("* ", visible(finding.sentence), terminal);
  }
  return out;
}

}  // namespace kelvar_tool
