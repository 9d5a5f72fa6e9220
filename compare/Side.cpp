#include "Side.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvar_compare {

void Side::add(RunRecord run, const AnchorsOf& anchorsOf) {
  std::vector<Partner> partners(run.sites.size());
  if (!sites_.empty()) {
    std::vector<const Identity*> known;
    for (const SideSite& site : sites_) known.push_back(&site.identity);
    std::vector<const Identity*> own;
    for (const SiteRecord& site : run.sites) own.push_back(&site.identity);
    partners = pairSites(known, own, anchorsOf);
  }
  sites_.reserve(std::max(sites_.size(), run.sites.size()));
  std::vector<double> times(sites_.size(), kUnknown);
  std::vector<double> gains(sites_.size(), kUnknown);
  times.reserve(run.sites.size());
  gains.reserve(run.sites.size());
  for (std::size_t at = 0; at < run.sites.size(); ++at) {
    const double time = run.sites[at].time;
    const double gain = run.sites[at].gain;
    const std::size_t site = place(std::move(run.sites[at]), partners[at].before);
    if (site >= times.size()) {
      times.resize(site + 1, kUnknown);
      gains.resize(site + 1, kUnknown);
    }
    times[site] = time;
    gains[site] = gain;
  }
  names_.push_back(std::move(run.name));
  analyses_ |= run.analyses;
  wholes_.push_back(run.wholes);
  times_.push_back(std::move(times));
  gains_.push_back(std::move(gains));
}

/// Adds the record to the site with the index `known`, or to a new one if that is kNone. Returns the index.
std::size_t Side::place(SiteRecord&& record, std::size_t known) {
  if (known == Partner::kNone) {
    known = sites_.size();
    sites_.emplace_back();
  }
  SideSite& site = sites_[known];
  site.identity = std::move(record.identity);
  ++site.runs;
  if (record.vectorised != Vectorised::unknown) ++site.vectorised[static_cast<std::size_t>(record.vectorised)];
  for (std::size_t sort = 0; sort < site.strides.size(); ++sort) {
    // Added as unsigned, which may not overflow: a damaged result may have counts of any size.
    site.strides[sort] = static_cast<std::int64_t>(static_cast<std::uint64_t>(site.strides[sort]) +
                                                   static_cast<std::uint64_t>(record.strides[sort]));
  }
  site.races = std::max(site.races, record.races);
  if (record.match != Match::absent) {
    site.match = site.match == Match::absent ? record.match : std::min(site.match, record.match);
  }
  return known;
}

std::vector<double> Side::wholes(std::optional<WholeOf> source) const {
  std::vector<double> all;
  all.reserve(wholes_.size());
  for (const auto& run : wholes_) {
    const double one = source ? run[static_cast<std::size_t>(*source)] : *std::max_element(run.begin(), run.end());
    all.push_back(one > 0 ? one : kUnknown);
  }
  return all;
}

std::size_t Side::timedRuns() const {
  const auto known = [](double one) { return !std::isnan(one); };
  const std::vector<double> all = wholes({});
  std::size_t count = 0;
  for (std::size_t run = 0; run < times_.size(); ++run) {
    if (known(all[run]) || std::any_of(times_[run].begin(), times_[run].end(), known)) ++count;
  }
  return count;
}

std::vector<double> Side::valuesOf(const Values& values, std::size_t site) {
  std::vector<double> all;
  all.reserve(values.size());
  for (const std::vector<double>& run : values) all.push_back(site < run.size() ? run[site] : kUnknown);
  return all;
}

double Side::gain(std::size_t site) const {
  return median(valuesOf(gains_, site));
}

Vectorised Side::vectorised(std::size_t site) const {
  const auto& counts = sites_[site].vectorised;
  const auto most = std::max_element(counts.begin(), counts.end());
  return *most == 0 ? Vectorised::unknown : static_cast<Vectorised>(most - counts.begin());
}

int Side::stride(std::size_t site) const {
  constexpr double kMatters = 0.25;
  const auto steps = [&](std::size_t sort) { return std::max(0.0, static_cast<double>(sites_[site].strides[sort])); };
  const double all = steps(0) + steps(1) + steps(2);
  if (all <= 0) return -1;
  if (steps(1) + steps(2) < kMatters * all) return 0;
  return steps(2) > steps(1) ? 2 : 1;
}

double Side::strideShare(std::size_t site) const {
  const int sort = stride(site);
  if (sort < 0) return kUnknown;
  double all = 0;
  for (const std::int64_t one : sites_[site].strides) all += std::max(0.0, static_cast<double>(one));
  return std::max(0.0, static_cast<double>(sites_[site].strides[static_cast<std::size_t>(sort)])) / all;
}

double median(std::vector<double> values) {
  std::erase_if(values, [](double one) { return std::isnan(one); });
  if (values.empty()) return kUnknown;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 == 1) return *middle;
  return *middle / 2 + *std::max_element(values.begin(), middle) / 2;
}

}  // namespace kelvar_compare
