#include "PlanSites.h"

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <unordered_set>

#include "RegionKinds.h"

namespace kelvar_tool {

using kelvar_2_1_7::closesRegion;
using kelvar_platform::AnchoredSite;
using kelvar_platform::Site;
using kelvar_sources::Kind;

PlanSites::PlanSites(const ScanInput& input, const kelvar_platform::AnchoredSites& database, PlanFiles& files,
                     kelvar_sources::Labels& labels)
    : database_(database),
      files_(files),
      groups_(database.sites.size(), Group::none),
      ends_(database.sites.size(), kNothing),
      markers_(database.sites.size(), kNothing) {
  std::unordered_set<std::string> active;
  for (const kelvar_sources::Rule& rule : input.rules.rules()) active.insert(rule.name);
  for (std::size_t i = 0; i < database.sites.size(); ++i) {
    const AnchoredSite& one = database.sites[i];
    if (one.site.alive) labels.take(one.site.kind, one.site.label);
    const bool hasRule = one.anchor && !one.anchor->rule.empty();
    if (hasRule && active.count(one.anchor->rule) == 0) {  // of another scan
      if (one.site.alive) files.at(files.of(i)).hasSites = true;
      const bool asLine = one.site.alive && !one.movedByHand && !closesRegion(one.site.kind);
      if (input.findsOtherRules && asLine && files.isOurs(files.of(i))) groups_[i] = Group::line;
      continue;
    }
    groups_[i] = groupOf(one, files.isOurs(files.of(i)));
  }
  std::vector<bool> paired(database.sites.size(), false);
  pairNeighbours(paired);
  pairByLabel(paired);
}

Group PlanSites::groupOf(const AnchoredSite& one, bool isOurs) const {
  const bool hasRule = one.anchor && !one.anchor->rule.empty();
  const bool isEnd = closesRegion(one.site.kind);
  if (!one.site.alive) {
    if (!hasRule) return Group::none;
    if (isEnd) return Group::end;
    const bool byHand = one.revision != one.anchor->revision;
    if (!byHand) return Group::dead;
    return isOurs ? Group::removed : Group::none;
  }
  if (!isOurs) return Group::none;
  if (!one.anchor || one.movedByHand) return Group::fresh;
  if (!hasRule) return Group::line;
  return isEnd ? Group::end : Group::marker;
}

void PlanSites::pairNeighbours(std::vector<bool>& paired) {
  for (std::size_t i = 0; i + 1 < database_.sites.size(); ++i) {
    const AnchoredSite& opener = database_.sites[i];
    const AnchoredSite& end = database_.sites[i + 1];
    const auto kind = kelvar_sources::endOf(opener.site.kind);
    if (!kind || end.site.kind != *kind || end.site.sequence != opener.site.sequence + 1) continue;
    if (!opener.anchor || !end.anchor || opener.anchor->rule.empty() || opener.anchor->rule != end.anchor->rule)
      continue;
    ends_[i] = i + 1;
    paired[i + 1] = true;
  }
}

/// An end belongs to the latest site before it in the file that has its label and is still open.
void PlanSites::pairByLabel(const std::vector<bool>& paired) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < database_.sites.size(); ++i) {
    if (database_.sites[i].site.alive && groups_[i] != Group::none && !paired[i] && ends_[i] == kNothing)
      order.push_back(i);
  }
  const auto key = [&](std::size_t i) {
    const Site& site = database_.sites[i].site;
    return std::tuple(files_.of(i), site.line, closesRegion(site.kind), site.column, site.sequence);
  };
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
  std::map<std::tuple<std::size_t, Kind, std::string>, std::vector<std::size_t>> open;
  for (const std::size_t i : order) {
    const Site& site = database_.sites[i].site;
    if (const auto kind = kelvar_sources::endOf(site.kind)) open[{files_.of(i), *kind, site.label}].push_back(i);
    if (!closesRegion(site.kind)) continue;
    std::vector<std::size_t>& waiting = open[{files_.of(i), site.kind, site.label}];
    if (waiting.empty()) continue;
    ends_[waiting.back()] = i;
    waiting.pop_back();
  }
}

std::vector<bool> PlanSites::followers() const {
  std::vector<bool> all(ends_.size(), false);
  for (std::size_t i = 0; i < ends_.size(); ++i) {
    if (ends_[i] != kNothing && (groups_[i] == Group::marker || markers_[i] != kNothing)) all[ends_[i]] = true;
  }
  return all;
}

}  // namespace kelvar_tool
