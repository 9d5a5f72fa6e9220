// Splits are counted by their rank sums. ways[k][s] is the number of ways to choose k of the values seen so far with a
// rank sum of s. Each new value extends every choice without it by one with it. Ranks are doubled, so that the shared
// ranks of equal values are whole numbers. Counts are doubles: they may exceed any integer, and only their ratio
// matters.
#include "RankTest.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kelvar_compare {

namespace {

/// Twice the rank of each value, by index; equal values share the mean of their ranks.
std::vector<std::size_t> doubledRanks(const std::vector<double>& values) {
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
  std::vector<std::size_t> ranks(values.size());
  for (std::size_t first = 0; first < order.size();) {
    std::size_t last = first;
    while (last + 1 < order.size() && values[order[last + 1]] == values[order[first]]) ++last;
    for (std::size_t at = first; at <= last; ++at) ranks[order[at]] = first + last + 2;
    first = last + 1;
  }
  return ranks;
}

/// The normal approximation, with the correction for continuity and that of the variance for equal values (Hollander,
/// Wolfe and Chicken, 4.1).
double approximateP(const std::vector<double>& before, const std::vector<double>& after) {
  std::vector<double> values = before;
  values.insert(values.end(), after.begin(), after.end());
  const std::vector<std::size_t> ranks = doubledRanks(values);
  double sum = 0;
  for (std::size_t at = 0; at < before.size(); ++at) sum += static_cast<double>(ranks[at]) / 2;
  const auto m = static_cast<double>(before.size());
  const auto n = static_cast<double>(after.size());
  const double all = m + n;
  std::sort(values.begin(), values.end());
  double ties = 0;
  for (auto first = values.begin(); first != values.end();) {
    const auto last = std::upper_bound(first, values.end(), *first);
    const auto count = static_cast<double>(last - first);
    ties += count * (count * count - 1);
    first = last;
  }
  const double variance = m * n / 12 * (all + 1 - ties / (all * (all - 1)));
  if (variance <= 0) return 1;
  const double distance = std::max(0.0, std::abs(sum - m * (all + 1) / 2) - 0.5);
  return std::erfc(distance / std::sqrt(2 * variance));
}

}  // namespace

double rankTest(const std::vector<double>& before, const std::vector<double>& after) {
  if (before.empty() || after.empty()) return 1;
  constexpr std::size_t kMostExact = 40;  // values; beyond, the exact test takes too long
  if (before.size() + after.size() > kMostExact) return approximateP(before, after);
  const bool beforeIsSmaller = before.size() <= after.size();
  std::vector<double> values = beforeIsSmaller ? before : after;
  const std::size_t chosen = values.size();
  const std::vector<double>& others = beforeIsSmaller ? after : before;
  values.insert(values.end(), others.begin(), others.end());

  const std::vector<std::size_t> ranks = doubledRanks(values);
  const std::size_t total = values.size() * (values.size() + 1);  // of all doubled ranks
  std::vector<std::vector<double>> ways(chosen + 1, std::vector<double>(total + 1, 0));
  ways[0][0] = 1;
  std::size_t seen = 0;
  for (std::size_t value = 0; value < values.size(); ++value) {
    seen += ranks[value];
    for (std::size_t k = std::min(chosen, value + 1); k > 0; --k) {
      for (std::size_t sum = seen; sum + 1 > ranks[value]; --sum) ways[k][sum] += ways[k - 1][sum - ranks[value]];
    }
  }

  // Distances from the mean are whole numbers once they are multiplied by the number of values.
  const auto distance = [&](std::size_t sum) {
    const std::size_t scaled = sum * values.size();
    const std::size_t mean = total * chosen;
    return scaled > mean ? scaled - mean : mean - scaled;
  };
  const std::size_t observed =
      std::accumulate(ranks.begin(), ranks.begin() + static_cast<std::ptrdiff_t>(chosen), std::size_t{0});
  double asFar = 0;
  double all = 0;
  for (std::size_t sum = 0; sum <= total; ++sum) {
    all += ways[chosen][sum];
    if (distance(sum) >= distance(observed)) asFar += ways[chosen][sum];
  }
  return asFar / all;
}

std::size_t splitsOf(std::size_t before, std::size_t after, std::size_t most) {
  std::size_t count = 1;
  for (std::size_t k = 1; k <= before; ++k) {
    count = count * (after + k) / k;  // a binomial coefficient at every step
    if (count > most) return most + 1;
  }
  return count;
}

double smallestP(std::size_t before, std::size_t after) {
  if (before == 0 || after == 0) return 1;
  constexpr std::size_t kMany = 1'000'000'000;
  return std::min(1.0, 2.0 / static_cast<double>(splitsOf(std::min(before, after), std::max(before, after), kMany)));
}

double levelFor(std::size_t before, std::size_t after) {
  constexpr double kLevel = 0.05;
  return std::max(kLevel, smallestP(before, after));
}

double familyLevelFor(std::size_t before, std::size_t after) {
  constexpr double kLevel = 0.025;
  return std::max(kLevel, smallestP(before, after));
}

}  // namespace kelvar_compare
