#include <utility>

#include "Planning.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::AnchoredSite;
using kelvar_sources::FindResult;
using kelvar_sources::FoundSite;
using kelvar_sources::SeenSite;
using kelvar_sources::Step;

SiteSearch::Wanted wantedSites(const Planning& plan, kelvar_sources::TextNumbers& numbers) {
  SiteSearch::Wanted wanted;
  for (std::size_t i = 0; i < plan.sites.size(); ++i) {
    const Group group = plan.sites.group(i);
    if (group != Group::marker && group != Group::dead && group != Group::removed) continue;
    const AnchoredSite& one = plan.database.sites[i];
    wanted.known.push_back({plan.files.of(i), one.site.line, group != Group::dead,
                            kelvar_sources::fingerprintOf(one.site.kind, anchorOf(*one.anchor), numbers)});
    wanted.sites.push_back(i);
  }
  return wanted;
}

/// The markers that do not belong to a site yet.
struct Seen {
  std::vector<SeenSite> sites;
  std::vector<std::size_t> markers;
};

Seen seenMarkers(const Planning& plan, kelvar_sources::TextNumbers& numbers) {
  Seen seen;
  for (std::size_t file = 0; file < plan.files.size(); ++file) {
    for (const std::size_t marker : plan.files.at(file).markers) {
      if (plan.files.markers()[marker].site != kNothing) continue;
      const FoundSite& found = *plan.files.markers()[marker].found;
      seen.sites.push_back({file, found.line, kelvar_sources::fingerprintOf(found.kind, found.anchor, numbers)});
      seen.markers.push_back(marker);
    }
  }
  return seen;
}

/// A site removed by hand stays removed. The surroundings of its marker are updated, so that it is still recognised at
/// the next scan.
void followRemoved(Planning& plan, std::size_t site) {
  const std::size_t marker = plan.sites.marker(site);
  if (marker == kNothing) return;
  const kelvar_sources::Anchor& now = plan.files.markers()[marker].found->anchor;
  if (anchorOf(*plan.database.sites[site].anchor) != now) plan.record.anchorRemoved(site, now);
}

void decide(Planning& plan, std::size_t site, const FindResult::Answer& answer) {
  const Group group = plan.sites.group(site);
  if (group == Group::removed) return followRemoved(plan, site);
  if (const std::size_t marker = plan.sites.marker(site); marker != kNothing) {
    const bool inSameFile = plan.files.markers()[marker].file == plan.files.of(site);
    return plan.placement.putAtMarker(site, marker, stepName(answer.step, inSameFile));
  }
  if (group == Group::dead) return;
  if (answer.ambiguous) return plan.placement.leave(site);
  plan.placement.end(site, kNoStep);
  const std::size_t follower = plan.sites.end(site);
  if (follower != kNothing && plan.database.sites[follower].site.alive) plan.placement.end(follower, kOpener);
}

}  // namespace

std::vector<std::size_t> findMarkers(Planning& plan) {
  kelvar_sources::TextNumbers numbers;
  SiteSearch::Wanted wanted = wantedSites(plan, numbers);
  const Seen seen = seenMarkers(plan, numbers);
  const FindResult result = plan.search.find(wanted, seen.sites);
  for (std::size_t k = 0; k < wanted.sites.size(); ++k) {
    if (result.known[k].seen == FindResult::kNone) continue;
    const std::size_t marker = seen.markers[result.known[k].seen];
    plan.files.markers()[marker].site = wanted.sites[k];
    plan.sites.setMarker(wanted.sites[k], marker);
  }
  for (std::size_t k = 0; k < wanted.sites.size(); ++k) decide(plan, wanted.sites[k], result.known[k]);
  std::vector<std::size_t> left;
  for (std::size_t s = 0; s < seen.markers.size(); ++s) {
    const bool isNone = plan.files.markers()[seen.markers[s]].site == kNothing;
    if (isNone && !result.contested[s]) left.push_back(seen.markers[s]);
  }
  return left;
}

}  // namespace kelvar_tool
