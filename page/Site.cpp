#include "Site.h"

#include <algorithm>
#include <string_view>

#include "RegionKinds.h"

namespace kelvar_page {

namespace {

using digestio::SummaryDataKind;
using sitenotes::annotation_t;

// Its present place, else its stored one, else where the first analysis saw it.
sitenotes::locator_t placeOf(const Site& site, const kelvar::SummaryItem& item, const sitenotes::locator_t& now) {
  if (!now.is_null()) return now;
  const sitenotes::locator_t stored = item.locator();
  if (!stored.is_null()) return stored;
  const auto first =
      std::find_if(site.seen.begin(), site.seen.end(), [](const auto& seen) { return seen.has_value(); });
  return first != site.seen.end() ? **first : stored;
}

void readPlaces(Site& site, kelvar::SummaryItem& item) {
  sitenotes::locator_t now({}, 0, 0);
  unsigned long handle = 0;
  item.getCurrentLocator(now, handle);
  site.handle = handle;
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    site.match[kind] = item.summaryDataStatus(kind);
    site.details[kind] = item.summaryDetail(kind);
    sitenotes::locator_t seen({}, 0, 0);
    if (item.getCollectionLocator(kind, seen, handle)) site.seen[kind] = seen;
  }
  site.place = placeOf(site, item, now);
}

void readTimes(Site& site, const kelvar::SummaryItem& item) {
  if (const auto* const survey = item.surveyDetail()) {
    site.surveyTime = site.time = survey->cpuTime();
    if (site.sort == SiteSort::function) site.own = site.time;
  }
  if (const auto* const loop = item.surveyVectorizationDetail()) {
    if (!site.time) site.time = loop->totalTime();
    if (site.sort == SiteSort::loop) site.own = loop->selfTime();
    site.vectorised = loop->state() == 0 ? Vectorised::no : loop->state() == 1 ? Vectorised::yes : Vectorised::partly;
  }
  if (const auto* const suitability = item.suitabilityDetail()) {
    site.suitabilityTime = suitability->selfTime();
    if (!site.time) site.time = suitability->selfTime();
    site.cores = suitability->cores();
    // 0 means that nothing was measured: an experiment without any gain gives 1.
    if (suitability->totalMaxGain() > 0) site.gain = suitability->totalMaxGain();
    if (suitability->siteMaxGain() > 0) site.siteGain = suitability->siteMaxGain();
  }
}

void readFindings(Site& site, const kelvar::SummaryItem& item) {
  if (const auto* const found = item.correctnessDetail()) {
    site.races = found->errors();
    site.lockOrders = found->warnings(0);
    site.otherFindings = found->warnings(1);
  }
  if (const auto* const map = item.mapDetail()) {
    site.strides = {map->strides(0), map->strides(1), map->strides(2)};
  }
}

// A text for a URL. A long text, or one with bytes that would not survive, is replaced by its hash.
std::string keyPart(const std::string& text) {
  constexpr std::size_t kLongest = 300;
  constexpr std::string_view kChanged("\0\n", 2);
  if (text.size() <= kLongest && text.find_first_of(kChanged) == std::string::npos) return text;
  std::uint64_t hash = 14695981039346656037U;  // FNV-1a: the same in every process, so that links last
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  return "#" + std::to_string(hash);
}

}  // namespace

Site siteOf(kelvar::SummaryItem& item) {
  Site site;
  switch (item.detailKind()) {
    case digestio::kHotSpot:
      site.sort = SiteSort::function;
      break;
    case digestio::kLoop:
      site.sort = SiteSort::loop;
      break;
    default:
      site.sort = SiteSort::annotated;
  }
  site.kind = item.annotationKind();
  site.label = item.label();
  site.current = item.summaryDataStatus() == kelvar::kCurrent;
  readPlaces(site, item);
  readTimes(site, item);
  readFindings(site, item);
  return site;
}

std::string kindName(const Site& site) {
  if (site.sort == SiteSort::function) return "function";
  if (site.sort == SiteSort::loop) return "loop";
  return annotation_t::display(site.kind);
}

bool isEnd(const Site& site) noexcept {
  return site.sort == SiteSort::annotated && kelvar_2_1_7::closesRegion(site.kind);
}

std::string shortPlace(const sitenotes::locator_t& place) {
  if (place.is_null()) return "?";
  return place.get_file().get_leaf() + ":" + std::to_string(place.get_line());
}

std::string placeText(const sitenotes::locator_t& place) {
  if (place.is_null()) return "?";
  return place.get_file().get_text() + ":" + std::to_string(place.get_line());
}

// `s12` for an annotated site; `r1/48/file\nlabel` for any other row.
std::string keyOf(const Site& site) {
  if (site.handle != 0) return "s" + std::to_string(site.handle);
  return "r" + std::to_string(static_cast<int>(site.sort)) + "/" + std::to_string(site.place.get_line()) + "/" +
         keyPart(site.place.get_file().get_text()) + "\n" + keyPart(site.label);
}

const char* analysisName(SummaryDataKind kind) noexcept {
  static constexpr kelvar_2_1_7::PerKind<const char*> kNames{
      {"survey", "vectorization", "suitability", "dependencies", "memory access"}};
  return kNames[kind];
}

std::optional<StrideShare> strideOf(const Site& site) noexcept {
  constexpr double kMatters = 0.25;
  if (!site.strides) return std::nullopt;
  const auto steps = [&](int sort) {
    return std::max(0.0, static_cast<double>((*site.strides)[static_cast<std::size_t>(sort)]));
  };
  const double all = steps(0) + steps(1) + steps(2);
  if (all <= 0) return std::nullopt;
  const int worse = steps(2) > steps(1) ? 2 : 1;
  const int sort = steps(1) + steps(2) >= kMatters * all ? worse : 0;
  return StrideShare{.sort = sort, .share = steps(sort) / all};
}

const char* strideName(int sort) noexcept {
  static constexpr std::array kNames{"unit", "constant", "varying"};
  return kNames[static_cast<std::size_t>(sort)];
}

}  // namespace kelvar_page
