#include "SiteShares.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace kelvar_readers {

namespace {

using kelvar_platform::EvidenceKind;

// Further lines of a site would say nothing new.
constexpr std::size_t kMostLines = 24;

/// Evidence has integer counts: microseconds for seconds, events for millions of events.
std::int64_t countOfWeight(double weight) {
  return std::max<std::int64_t>(1, std::llround(std::min(weight * 1e6, 9e18)));
}

std::string percent(double part, double whole) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %%", whole > 0 ? 100 * part / whole : 0.0);
  return text;
}

}  // namespace

SiteShares::SiteShares(Places& places, const Tally& tally)
    : places_(places), tally_(tally), sites_(places.regions().size()) {}

void SiteShares::add(std::size_t site, std::size_t function, const Place& place, double weight) {
  Site& in = sites_[site];
  in.lines[{function, places_.numberOf(place.file), place.line}] += weight;
  for (const std::size_t around : places_.regionsAt(place)) {
    if (around == site) in.onOwnLines += weight;
  }
}

void SiteShares::addTo(Outcome& outcome, std::size_t site, double time, double within) const {
  const Site& in = sites_[site];
  if (time <= 0) return;
  const auto detail = static_cast<std::int32_t>(outcome.details.size()) - 1;
  const auto say = [&](const std::string& text, double weight, kelvar_platform::EvidencePlace place) {
    kelvar_platform::Evidence one{.detail = detail, .kind = EvidenceKind::share, .text = text};
    one.count = countOfWeight(weight);
    if (!place.file.empty()) one.places.push_back(std::move(place));
    outcome.evidence.push_back(std::move(one));
  };
  const Region& region = places_.regions()[site];
  if (in.onOwnLines > 0) {
    say(percent(in.onOwnLines, time) + " of it on its own lines", in.onOwnLines,
        {.role = "own lines", .file = region.file, .line = region.first});
  }
  if (time > within) say(percent(time - within, time) + " of it in what its lines call", time - within, {});
  std::vector<std::pair<Key, double>> lines(in.lines.begin(), in.lines.end());
  std::sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) {
    if (a.second != b.second) return a.second > b.second;
    return std::tie(a.first.function, a.first.file, a.first.line) <
           std::tie(b.first.function, b.first.file, b.first.line);
  });
  if (lines.size() > kMostLines) lines.resize(kMostLines);
  for (const auto& [key, weight] : lines) {
    const Place place{
        .function = tally_.functionName(key.function), .file = places_.pathNumbered(key.file), .line = key.line};
    say(percent(weight, time) + " of it in " + plainText(place.function), weight,
        {.role = "line", .file = plainText(place.file), .line = place.line, .function = plainText(place.function)});
  }
}

}  // namespace kelvar_readers
