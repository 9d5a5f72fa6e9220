#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include "FamilyTest.h"
#include "RankTest.h"

namespace kelvar_compare {
namespace {

using Values = std::vector<double>;

/// Tries every split; pairs are counted, with a half for equal ones, as Mann and Whitney do.
double plainRankTest(const Values& before, const Values& after) {
  Values all = before;
  all.insert(all.end(), after.begin(), after.end());
  std::vector<char> isAfter(before.size(), 0);
  isAfter.insert(isAfter.end(), after.size(), 1);
  const auto farFromMean = [&] {
    int twice = 0;  // twice the pairs in which AFTER is greater
    for (std::size_t a = 0; a < all.size(); ++a) {
      for (std::size_t b = 0; b < all.size(); ++b) {
        if (isAfter[a] == 0 && isAfter[b] != 0) twice += all[a] < all[b] ? 2 : all[a] == all[b] ? 1 : 0;
      }
    }
    return std::abs(twice - static_cast<int>(before.size() * after.size()));
  };
  const int observed = farFromMean();
  int asFar = 0;
  int count = 0;
  do {
    ++count;
    if (farFromMean() >= observed) ++asFar;
  } while (std::next_permutation(isAfter.begin(), isAfter.end()));
  return static_cast<double>(asFar) / count;
}

TEST(RankTest, IsWhatAllSplitsSay) {
  std::mt19937_64 random(1);
  for (std::size_t before = 1; before <= 5; ++before) {
    for (std::size_t after = 1; after <= 5; ++after) {
      for (std::uint64_t different : {1U, 2U, 4U, 100U}) {  // the fewer, the more are equal
        for (int round = 0; round < 5; ++round) {
          Values a;
          Values b;
          for (std::size_t i = 0; i < before; ++i) a.push_back(static_cast<double>(random() % different));
          for (std::size_t i = 0; i < after; ++i) b.push_back(static_cast<double>(random() % different));
          EXPECT_NEAR(rankTest(a, b), plainRankTest(a, b), 1e-12)
              << testing::PrintToString(a) << testing::PrintToString(b);
        }
      }
    }
  }
}

TEST(RankTest, IsCloseToAllSplitsWhereTheyAreTooMany) {
  const auto shifted = [](int runs, int by) {
    Values before;
    Values after;
    for (int run = 0; run < runs; ++run) {
      before.push_back(run);
      after.push_back(run + by);
    }
    return rankTest(before, after);
  };
  // The exact ones, with ties, were counted by a program apart.
  EXPECT_NEAR(shifted(12, 4), 0.019655, 1e-6);
  EXPECT_NEAR(shifted(30, 7), 0.005556, 0.001);
  EXPECT_DOUBLE_EQ(shifted(515, 0), 1);
  EXPECT_LT(shifted(515, 100), 1e-6);
  EXPECT_DOUBLE_EQ(rankTest(Values(50, 2), Values(50, 2)), 1);
}

TEST(RankTest, SaysWhatCanBeSaid) {
  EXPECT_DOUBLE_EQ(rankTest({1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}), 2.0 / 252);
  EXPECT_DOUBLE_EQ(smallestP(5, 5), 2.0 / 252);
  EXPECT_DOUBLE_EQ(levelFor(3, 3), 0.1);
  EXPECT_DOUBLE_EQ(levelFor(5, 5), 0.05);
  EXPECT_DOUBLE_EQ(rankTest({}, {1}), 1);
  EXPECT_DOUBLE_EQ(rankTest({2, 2, 2}, {2, 2, 2}), 1);
  Values low;
  Values high;
  for (int i = 0; i < 40; ++i) {
    low.push_back(i);
    high.push_back(100 + i);
  }
  EXPECT_GT(rankTest(low, high), 0);
  EXPECT_LT(rankTest(low, high), 1e-12);
}

/// A program of stages from 1 s down to 10 ms, measured five times a side. Small stages are noisier, as they are with a
/// sampling profiler, and some runs are slow as a whole.
class Measured {
 public:
  explicit Measured(std::uint64_t seed) : random_(seed) {}

  Family family(std::size_t sites, double noise, double moreWork) {
    Family family{.before = 5, .after = 5, .seconds = {}};
    Values ofRun;
    for (int run = 0; run < 10; ++run) ofRun.push_back(0.03 * bell() + (random_() % 10 == 0 ? 0.1 : 0));
    for (std::size_t site = 0; site < sites; ++site) {
      const double time = std::pow(10, -2.0 * static_cast<double>(site) / static_cast<double>(sites));
      Values row;
      for (std::size_t run = 0; run < 10; ++run) {
        const double work = site == 0 && run >= 5 ? 1 + moreWork : 1;
        row.push_back(work * time * std::exp(noise * bell() / std::pow(time, 0.25) + ofRun[run]));
      }
      family.seconds.push_back(row);
    }
    return family;
  }

 private:
  double bell() {
    double sum = 0;
    for (int i = 0; i < 12; ++i) sum += static_cast<double>(random_() >> 11U) / static_cast<double>(1ULL << 53U);
    return sum - 6;
  }

  std::mt19937_64 random_;
};

/// By site: 1 slower, -1 faster, 0 neither.
std::vector<int> callsOf(const Family& family) {
  constexpr double kThreshold = 0.03;
  std::vector<int> calls;
  for (const SiteVerdict& verdict : judge(family)) {
    calls.push_back(!isCall(verdict, family, kThreshold) ? 0 : verdict.change > 0 ? 1 : -1);
  }
  return calls;
}

bool any(const std::vector<int>& calls, std::ptrdiff_t from) {
  return std::any_of(calls.begin() + from, calls.end(), [](int call) { return call != 0; });
}

TEST(FamilyTest, FindsATenthMoreWorkAndNothingElse) {
  constexpr int kTries = 100;
  for (const std::size_t sites : {std::size_t{7}, std::size_t{30}}) {
    Measured measured(sites);
    int found = 0;
    int others = 0;
    int ofItself = 0;
    for (int attempt = 0; attempt < kTries; ++attempt) {
      const std::vector<int> changed = callsOf(measured.family(sites, 0.01, 0.1));
      found += changed[0] > 0 ? 1 : 0;
      others += any(changed, 1) ? 1 : 0;
      ofItself += any(callsOf(measured.family(sites, 0.01, 0)), 0) ? 1 : 0;
    }
    EXPECT_GE(found, kTries * 19 / 20) << sites;
    EXPECT_LE(others, kTries / 20) << sites;
    EXPECT_LE(ofItself, kTries / 20) << sites;
  }
}

TEST(FamilyTest, TakesCountsWithoutNoiseAndTimesThatAreMissing) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const Family family{.before = 5,
                      .after = 5,
                      .seconds = {{1, 1, 1, 1, 1, 2, 2, 2, 2, 2},
                                  {3, 3, 3, 3, 3, 3, 3, 3, 3, 3},
                                  {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
                                  {1, kNaN, kNaN, kNaN, kNaN, 9, kNaN, kNaN, kNaN, kNaN},
                                  {kNaN, kNaN, kNaN, kNaN, kNaN, 1, 1, 1, 1, 1}}};
  EXPECT_EQ(callsOf(family), (std::vector<int>{1, 0, 0, 0, 0}));
  EXPECT_DOUBLE_EQ(judge(family)[0].change, 1);
  EXPECT_TRUE(judge({}).empty());
}

// A site that did not change is not called because most others did.
TEST(FamilyTest, CallsNothingThatWasMeasuredToBeTheSame) {
  Family family{.before = 5, .after = 5, .seconds = {}};
  for (int site = 0; site < 7; ++site) {
    const double after = site < 5 ? 2 : 1;
    family.seconds.push_back({1, 1, 1, 1, 1, after, after, after, after, after});
  }
  EXPECT_EQ(callsOf(family), (std::vector<int>{1, 1, 1, 1, 1, 0, 0}));
}

}  // namespace
}  // namespace kelvar_compare
