#include "Staleness.h"

#include <cstdlib>

#include "Figures.h"

namespace kelvar_page {

namespace {

using digestio::SummaryDataKind;

std::string linesText(std::int64_t lines) {
  return counted(std::abs(lines), "line", "lines") + (lines > 0 ? " further down" : " further up");
}

bool sameLeaf(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  return a.get_file().compare_leaf(b.get_file()) == 0;
}

std::int64_t linesBetween(const sitenotes::locator_t& from, const sitenotes::locator_t& to) {
  return std::int64_t{to.get_line()} - from.get_line();
}

std::optional<Staleness> moved(const Site& site) {
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const auto& seen = site.seen[kind];
    if (!seen || site.match[kind] != kelvar::kApproximateMatchCurrent) continue;
    const std::int64_t lines = linesBetween(*seen, site.place);
    const bool otherFile = !sameLeaf(*seen, site.place);
    return Staleness{
        .mark = '~',
        .word = otherFile ? "other file" : "moved " + std::string(lines > 0 ? "+" : "") + std::to_string(lines),
        .why = std::string(analysisName(kind)) + " saw it at " + shortPlace(*seen) + ", and it is at " +
               shortPlace(site.place) + " now"};
  }
  return std::nullopt;
}

}  // namespace

std::optional<Staleness> stalenessOf(const Site& site, const Overview& overview, const Sources& sources) {
  if (!overview.anyCurrent() || site.sort != SiteSort::annotated) return std::nullopt;
  if (!site.current && site.handle != 0) {
    return Staleness{.mark = '?', .word = "removed", .why = "its annotation was removed since the analyses ran"};
  }
  if (!site.current) {
    return Staleness{.mark = '?', .word = "no site", .why = "no annotation is at " + shortPlace(site.place) + " now"};
  }
  if (auto found = moved(site)) return found;
  const std::string& file = site.place.get_file().get_text();
  if (file.empty() || !sources.has(file)) return std::nullopt;
  const auto* const lines = sources.linesOf(file);
  if (!lines || static_cast<std::size_t>(site.place.get_line()) <= lines->size()) return std::nullopt;
  return Staleness{.mark = '!',
                   .word = "past end",
                   .why = site.place.get_file().get_leaf() + " has only " +
                          counted(static_cast<std::int64_t>(lines->size()), "line", "lines") + " now"};
}

std::string whyMatched(const Site& site, SummaryDataKind kind) {
  const auto& seen = site.seen[kind];
  if (site.match[kind] == kelvar::kNotPresent || !seen) return "says nothing of this site";
  switch (site.match[kind]) {
    case kelvar::kExactMatchCurrent:
      return "matches: seen at " + shortPlace(*seen) + ", where the site is now";
    case kelvar::kApproximateMatchCurrent: {
      const std::string to =
          sameLeaf(*seen, site.place) ? linesText(linesBetween(*seen, site.place)) : "in another file";
      return "matches by the site's number: seen at " + shortPlace(*seen) + ", and the site is " + to + " now";
    }
    default:
      break;
  }
  if (site.sort != SiteSort::annotated) {
    return "seen at " + shortPlace(*seen) + "; functions and loops are not annotated, so there is nothing to match";
  }
  if (site.handle != 0) return "no match: seen at " + shortPlace(*seen) + ", but the annotation was removed since";
  return "no match: no annotation of this kind was in " + seen->get_file().get_leaf() + " at line " +
         std::to_string(seen->get_line()) + " when the result was collected";
}

}  // namespace kelvar_page
