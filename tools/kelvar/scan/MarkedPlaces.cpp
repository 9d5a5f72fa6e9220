#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "Planning.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::AnchoredSite;
using kelvar_platform::Site;
using kelvar_sources::FoundSite;
using kelvar_sources::Kind;

/// The markers in the files with sites placed by hand. Each marker is handed out once.
class MarkersByLine {
 public:
  explicit MarkersByLine(const Planning& plan) {
    std::vector<bool> wanted(plan.files.size(), false);
    for (std::size_t i = 0; i < plan.sites.size(); ++i) {
      if (plan.sites.group(i) == Group::fresh) wanted[plan.files.of(i)] = true;
    }
    for (std::size_t file = 0; file < wanted.size(); ++file) {
      if (!wanted[file]) continue;
      const std::vector<std::size_t>& markers = plan.files.at(file).markers;
      const std::vector<std::size_t> backwards(markers.rbegin(), markers.rend());
      for (const std::size_t marker : backwards) {
        const FoundSite& found = *plan.files.markers()[marker].found;
        markers_[{file, found.line, found.kind}].push_back(marker);
      }
    }
  }

  /// The first unused marker of the kind on the line; kNothing when there is none.
  std::size_t take(std::size_t file, int line, Kind kind) {
    const auto there = markers_.find({file, line, kind});
    if (there == markers_.end() || there->second.empty()) return kNothing;
    const std::size_t marker = there->second.back();
    there->second.pop_back();
    return marker;
  }

 private:
  std::map<std::tuple<std::size_t, int, Kind>, std::vector<std::size_t>> markers_;  // the first one last
};

/// Records the surroundings of a line that was marked by hand, if it is a line of code.
void anchorLine(Planning& plan, std::size_t site) {
  const std::size_t file = plan.files.of(site);
  if (!plan.files.at(file).isRead()) return;
  const Site& there = plan.database.sites[site].site;
  const std::vector<FoundSite>& lines = plan.files.linesOf(file);
  const auto line = std::lower_bound(lines.begin(), lines.end(), there.line,
                                     [](const FoundSite& one, int number) { return one.line < number; });
  if (line == lines.end() || line->line != there.line) return;
  plan.record.anchor(there, line->anchor);
  plan.record.countAnchored();
  plan.files.at(file).hasSites = true;
}

}  // namespace

void acceptManualPlaces(Planning& plan) {
  MarkersByLine markers(plan);
  std::vector<std::size_t> atMarkers;
  std::vector<std::size_t> atLines;
  for (std::size_t i = 0; i < plan.sites.size(); ++i) {
    if (plan.sites.group(i) != Group::fresh) continue;
    const Site& site = plan.database.sites[i].site;
    const std::size_t marker = markers.take(plan.files.of(i), site.line, site.kind);
    (marker == kNothing ? atLines : atMarkers).push_back(i);
    if (marker == kNothing) continue;
    plan.sites.setMarker(i, marker);
    plan.files.markers()[marker].site = i;
  }
  for (const std::size_t i : atMarkers) {
    plan.placement.putAtMarker(i, plan.sites.marker(i), kByHand);
    const AnchoredSite& one = plan.database.sites[i];
    if (!one.anchor || one.anchor->rule.empty()) plan.record.countAnchored();
  }
  const std::vector<bool> followers = plan.sites.followers();
  for (const std::size_t i : atLines) {
    if (!followers[i]) anchorLine(plan, i);
  }
}

}  // namespace kelvar_tool
