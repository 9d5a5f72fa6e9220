// Times are compared by their logarithms, since a machine's noise is a share of the time. What a run has in common over
// all sites (a busy machine, another frequency) is taken off each site as far as the site follows it, which code that
// waits for memory does and arithmetic does not, and up to a limit: a change beyond it is not a machine's. The
// statistic is the difference of the sides' means over its standard error, plus a constant of the family that keeps a
// site from looking clear by a spread that is small by chance (Tusher, Tibshirani and Chu 2001): the lower quartile of
// the spreads, since a median would hide what happens to the quiet sites among loud ones. All of that is decided
// without looking at which side a run is of, so that every split is as likely as the one at hand.
#include "FamilyTest.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>

#include "RankTest.h"

namespace kelvar_compare {

namespace {

constexpr std::size_t kMostSplits = 10'000;
constexpr std::size_t kLeastCommon = 5;    // with fewer sites, a single one may dominate the common factor
constexpr double kMostCommon = 0.1397619;  // log 1.15
constexpr double kMedian = 0.5;
constexpr double kLowerQuartile = 0.25;
constexpr double kLeastTime = 1e-4;  // of the site's greatest time; a smaller one was hardly sampled

using Sides = std::vector<char>;  // 1: the run is of AFTER

/// 0 if there are no values.
double quantileOf(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  const double at = part * static_cast<double>(values.size() - 1);
  const auto below = values.begin() + static_cast<std::ptrdiff_t>(at);
  std::nth_element(values.begin(), below, values.end());
  if (below + 1 == values.end()) return *below;
  return std::lerp(*below, *std::min_element(below + 1, values.end()), at - std::floor(at));
}

std::vector<double> logarithms(const std::vector<double>& seconds) {
  double most = 0;
  for (const double one : seconds) {
    if (one > most) most = one;  // false for NaN
  }
  std::vector<double> logs;
  for (const double one : seconds) {
    logs.push_back(std::isnan(one) || most <= 0 ? std::nan("") : std::log(std::max(one, most * kLeastTime)));
  }
  return logs;
}

double meanOf(const std::vector<double>& values) {
  double sum = 0;
  double count = 0;
  for (const double one : values) {
    if (std::isnan(one)) continue;
    sum += one;
    ++count;
  }
  return count > 0 ? sum / count : 0;
}

/// How far a site follows what its runs have in common, from 0 to 1: the median slope over all pairs of runs (Theil
/// 1950, Sen 1968), which a change of the site itself moves little.
double slopeOf(const std::vector<double>& site, const std::vector<double>& common) {
  constexpr double kApart = 1e-9;  // a slope between equal runs says nothing
  std::vector<double> slopes;
  for (std::size_t a = 0; a < site.size(); ++a) {
    for (std::size_t b = a + 1; b < site.size(); ++b) {
      const double apart = common[b] - common[a];
      if (std::abs(apart) <= kApart || std::isnan(site[a]) || std::isnan(site[b])) continue;
      slopes.push_back((site[b] - site[a]) / apart);
    }
  }
  return std::clamp(quantileOf(std::move(slopes), kMedian), 0.0, 1.0);
}

/// What each run has in common, taken over the sites that every run timed; 0 where they are too few.
std::vector<double> commonOf(const std::vector<std::vector<double>>& sites) {
  std::vector<std::vector<double>> offsets(sites.front().size());
  for (const std::vector<double>& site : sites) {
    if (std::any_of(site.begin(), site.end(), [](double one) { return std::isnan(one); })) continue;
    const double mean = meanOf(site);
    for (std::size_t run = 0; run < site.size(); ++run) offsets[run].push_back(site[run] - mean);
  }
  std::vector<double> common(offsets.size(), 0);
  for (std::size_t run = 0; run < offsets.size(); ++run) {
    if (offsets[run].size() >= kLeastCommon) common[run] = quantileOf(std::move(offsets[run]), kMedian);
  }
  return common;
}

void takeOffCommon(std::vector<std::vector<double>>& sites) {
  const std::vector<double> common = commonOf(sites);
  for (std::vector<double>& site : sites) {
    const double slope = slopeOf(site, common);
    for (std::size_t run = 0; run < site.size(); ++run) {
      site[run] -= std::clamp(slope * common[run], -kMostCommon, kMostCommon);
    }
  }
}

/// Draws values far from the site's median in, so that one bad run does not hide a change of the others.
void drawIn(std::vector<double>& site) {
  constexpr double kFar = 2.5;  // in median deviations
  std::vector<double> known;
  for (const double one : site) {
    if (!std::isnan(one)) known.push_back(one);
  }
  const double median = quantileOf(known, kMedian);
  for (double& one : known) one = std::abs(one - median);
  const double reach = kFar * quantileOf(std::move(known), kMedian);
  for (double& one : site) {
    if (!std::isnan(one)) one = std::clamp(one, median - reach, median + reach);
  }
}

/// A site's sums over a side.
struct Sums {
  double count = 0;
  double sum = 0;
  double squares = 0;
};

class Statistic {
 public:
  explicit Statistic(const std::vector<std::vector<double>>& sites) : sites_(sites) {
    for (std::vector<double>& site : sites_) {
      drawIn(site);
      const double mean = meanOf(site);
      for (double& one : site) one -= mean;  // so that squares lose no digits
    }
    std::vector<double> spreads;
    for (const std::vector<double>& site : sites_) spreads.push_back(spreadOf(site));
    constant_ = quantileOf(std::move(spreads), kLowerQuartile);
  }

  [[nodiscard]] std::size_t count() const { return sites_.size(); }

  [[nodiscard]] double difference(std::size_t site, const Sides& sides) const {
    const auto [before, after] = sumsOf(site, sides);
    return before.count > 0 && after.count > 0 ? after.sum / after.count - before.sum / before.count : 0;
  }

  /// How clearly the sides differ at the site; 0 where a side has less than two times.
  [[nodiscard]] double clearness(std::size_t site, const Sides& sides) const {
    const auto [before, after] = sumsOf(site, sides);
    if (before.count < 2 || after.count < 2) return 0;
    const double apart = std::abs(after.sum / after.count - before.sum / before.count);
    const double within = std::max(0.0, before.squares - before.sum * before.sum / before.count) +
                          std::max(0.0, after.squares - after.sum * after.sum / after.count);
    const double variance = within / (before.count + after.count - 2);
    const double error = (std::sqrt(variance) + constant_) * std::sqrt(1 / before.count + 1 / after.count);
    constexpr double kRounding = 1e-9;  // as equal times have it
    return apart / (error + kRounding);
  }

 private:
  static double spreadOf(const std::vector<double>& site) {
    double squares = 0;
    double count = 0;
    for (const double one : site) {
      if (std::isnan(one)) continue;
      squares += one * one;
      ++count;
    }
    return count > 1 ? std::sqrt(squares / (count - 1)) : 0;
  }

  [[nodiscard]] std::pair<Sums, Sums> sumsOf(std::size_t site, const Sides& sides) const {
    std::pair<Sums, Sums> both;
    for (std::size_t run = 0; run < sides.size(); ++run) {
      const double value = sites_[site][run];
      if (std::isnan(value)) continue;
      Sums& side = sides[run] != 0 ? both.second : both.first;
      ++side.count;
      side.sum += value;
      side.squares += value * value;
    }
    return both;
  }

  std::vector<std::vector<double>> sites_;
  double constant_ = 0;
};

/// Hands out every split, or as many random ones; the one at hand comes first.
class Splits {
 public:
  Splits(std::size_t before, std::size_t after) : all_(splitsOf(before, after, kMostSplits)) {
    sides_.assign(before, 0);
    sides_.insert(sides_.end(), after, 1);
  }

  [[nodiscard]] const Sides& sides() const { return sides_; }

  bool next() {
    if (all_ <= kMostSplits) return std::next_permutation(sides_.begin(), sides_.end());
    if (++drawn_ == kMostSplits) return false;
    for (std::size_t left = sides_.size(); left > 1; --left) std::swap(sides_[left - 1], sides_[random() % left]);
    return true;
  }

 private:
  // splitmix64: the same on every machine, as the standard's distributions are not.
  std::size_t random() {
    std::uint64_t value = state_ += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30U)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27U)) * 0x94d049bb133111ebU;
    return static_cast<std::size_t>(value ^ (value >> 31U));
  }

  std::size_t all_;
  std::size_t drawn_ = 0;
  std::uint64_t state_ = 1;
  Sides sides_;
};

std::vector<double> familyPs(const Statistic& statistic, std::size_t before, std::size_t after) {
  Splits splits(before, after);
  std::vector<double> observed;
  for (std::size_t site = 0; site < statistic.count(); ++site) {
    observed.push_back(statistic.clearness(site, splits.sides()));
  }
  std::vector<double> greatest;
  do {
    double most = 0;
    for (std::size_t site = 0; site < statistic.count(); ++site) {
      most = std::max(most, statistic.clearness(site, splits.sides()));
    }
    greatest.push_back(most);
  } while (splits.next());
  std::sort(greatest.begin(), greatest.end());
  std::vector<double> ps;
  for (const double one : observed) {
    const auto asClear = std::lower_bound(greatest.begin(), greatest.end(), one * (1 - 1e-12));
    ps.push_back(static_cast<double>(greatest.end() - asClear) / static_cast<double>(greatest.size()));
  }
  return ps;
}

struct Timed {
  std::vector<double> before;
  std::vector<double> after;
};

/// The values of a site, without those that are missing.
Timed timedIn(const std::vector<double>& values, std::size_t before) {
  Timed timed;
  for (std::size_t run = 0; run < values.size(); ++run) {
    if (!std::isnan(values[run])) (run < before ? timed.before : timed.after).push_back(values[run]);
  }
  return timed;
}

double changeOf(const Timed& timed) {
  const double base = quantileOf(timed.before, kMedian);
  return base > 0 && !timed.after.empty() ? quantileOf(timed.after, kMedian) / base - 1 : std::nan("");
}

}  // namespace

bool isCall(const SiteVerdict& verdict, const Family& family, double threshold) {
  return verdict.p <= verdict.level && verdict.familyP <= familyLevelFor(family.before, family.after) &&
         std::abs(verdict.change) >= threshold && verdict.change * verdict.apart > 0;
}

std::vector<SiteVerdict> judge(const Family& family) {
  if (family.seconds.empty()) return {};
  std::vector<std::vector<double>> logs;
  for (const std::vector<double>& site : family.seconds) logs.push_back(logarithms(site));
  takeOffCommon(logs);
  const Statistic statistic(logs);
  const std::vector<double> ps = familyPs(statistic, family.before, family.after);
  Sides sides(family.before, 0);
  sides.insert(sides.end(), family.after, 1);
  std::vector<SiteVerdict> verdicts;
  for (std::size_t site = 0; site < ps.size(); ++site) {
    const Timed apart = timedIn(logs[site], family.before);
    verdicts.push_back({.p = rankTest(apart.before, apart.after),
                        .familyP = ps[site],
                        .level = levelFor(apart.before.size(), apart.after.size()),
                        .apart = std::expm1(statistic.difference(site, sides)),
                        .change = changeOf(timedIn(family.seconds[site], family.before))});
  }
  return verdicts;
}

}  // namespace kelvar_compare
