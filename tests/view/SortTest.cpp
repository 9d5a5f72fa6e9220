// Whether the one sort copes with every relation, and orders what an ordering leaves undecided.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

#include "support/Faults.h"
#include "support/Rows.h"
#include "view/PlainOrderings.h"
#include "view/RandomItems.h"
#include "view/ordering/KeySort.h"
#include "view/ordering/PlaceOrder.h"

using namespace kelvar_2_1_7;

namespace {

constexpr auto kByKey = [](const KeyedIndex& a, const KeyedIndex& b) { return a.key < b.key; };

/// Records of few keys or of many, as a sort may find them.
std::vector<KeyedIndex> someRecords(int round, std::mt19937_64& engine) {
  const std::uint64_t keys = round % 5 == 0 ? 1000 : round % 5 == 1 ? std::numeric_limits<std::uint64_t>::max() : 30;
  std::vector<KeyedIndex> records(engine() % (round % 50 == 0 ? 3000 : 40));
  for (std::size_t i = 0; i < records.size(); ++i) records[i] = {engine() % keys, static_cast<std::uint32_t>(i)};
  const auto middle = records.begin() + static_cast<std::ptrdiff_t>(records.size() / 2);
  if (round % 3 == 1) std::stable_sort(middle, records.end(), kByKey);
  if (round % 3 == 2) std::stable_sort(records.rbegin(), records.rend(), kByKey);
  if (round % 6 == 0) std::stable_sort(records.begin(), middle, kByKey);
  return records;
}

TEST(KeySort, SortsAsAStableSortDoes) {
  std::mt19937_64 engine(3);
  std::vector<KeyedIndex> buffer;
  for (int round = 0; round < 3000; ++round) {
    std::vector<KeyedIndex> records = someRecords(round, engine);
    std::vector<KeyedIndex> want = records;
    std::stable_sort(want.begin(), want.end(), kByKey);
    round % 2 == 0 ? sortByKey(std::span(records), buffer) : mergeSort(std::span(records), buffer, kByKey);
    const auto areSame = [](const KeyedIndex& a, const KeyedIndex& b) { return a.key == b.key && a.index == b.index; };
    ASSERT_TRUE(std::equal(records.begin(), records.end(), want.begin(), want.end(), areSame)) << round;
  }
}

TEST(KeySort, KeysOrderAsTheirNumbersDo) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr std::array kAscending{-kInfinity, -2.5, -5e-324, 0.0, 5e-324, 2.5, 1e300, kInfinity};
  for (std::size_t i = 1; i < kAscending.size(); ++i) EXPECT_LT(keyOf(kAscending[i - 1]), keyOf(kAscending[i]));
  EXPECT_EQ(keyOf(-0.0), keyOf(0.0));
  EXPECT_LT(keyOf(kInfinity), kUnordered);
  EXPECT_EQ(keyOf(-std::numeric_limits<double>::quiet_NaN()), kUnordered);
}

TEST(MergeSort, KeepsAllRecordsUnderAnyRelation) {
  std::mt19937 engine(5);
  std::vector<int> buffer;
  for (int round = 0; round < 1000; ++round) {
    std::vector<int> records(engine() % 300);
    std::iota(records.begin(), records.end(), 0);
    std::vector<int> want = records;
    long asked = 0;
    mergeSort(std::span(records), buffer, [&](int a, int b) {
      ++asked;
      if (round % 3 == 0) return (a - b + 300) % 3 == 1;  // stone, paper, scissors
      return round % 3 == 1 || engine() % 2 == 0;
    });
    EXPECT_LE(asked, 20 + 20 * static_cast<long>(records.size()));
    std::sort(records.begin(), records.end());
    ASSERT_EQ(records, want);
  }
}

TEST(MergeSort, AsksOnceForEachRecordOfWhatIsSortedOrTurnedAround) {
  std::vector<int> buffer;
  for (const bool reversed : {false, true}) {
    std::vector<int> records(10000);
    std::iota(records.begin(), records.end(), 0);
    if (reversed) std::reverse(records.begin(), records.end());
    long asked = 0;
    mergeSort(std::span(records), buffer, [&](int a, int b) { return ++asked, a < b; });
    EXPECT_LT(asked, 10001);
    EXPECT_TRUE(std::is_sorted(records.begin(), records.end()));
  }
}

/// Items at few places, sorted up to the end of the first part and from the beginning of the second.
std::vector<std::unique_ptr<SummaryItemImpl>> someItems(std::size_t count, std::size_t sortedBefore,
                                                        std::size_t sortedBehind) {
  std::mt19937 engine(7);
  std::vector<std::unique_ptr<SummaryItemImpl>> items;
  while (items.size() < count) {
    std::string place = std::string(1, static_cast<char>('a' + engine() % 2)) + "/leaf" + "xyz"[engine() % 3];
    place += ':' + std::to_string(static_cast<int>(engine() % 400) - 200) + ':' + std::to_string(engine() % 3);
    items.push_back(support::itemFrom(support::annotation("l", place), items.size()));
  }
  const auto at = [&](std::size_t index) { return items.begin() + static_cast<std::ptrdiff_t>(index); };
  const auto before = [](const auto& a, const auto& b) { return a->place().display_order(b->place()) < 0; };
  std::stable_sort(at(0), at(sortedBefore), before);
  std::stable_sort(at(count - sortedBehind), at(count), before);
  return items;
}

TEST(PlaceOrder, IsTheOrderOfPlacesThenOfHandlesWhateverIsSortedAlready) {
  constexpr std::size_t kCount = 3000;
  const std::pair<std::size_t, std::size_t> sorted[] = {{0, 0},       {kCount, 0}, {1, kCount - 1},
                                                        {1300, 1700}, {700, 900},  {1300, 1690}};
  for (const auto& [before, behind] : sorted) {
    const auto items = someItems(kCount, before, behind);
    std::vector<SummaryItemImpl*> want;
    for (const auto& item : items) want.push_back(item.get());
    const std::vector<PlacedItem> placed = placeOrder(want);
    std::sort(want.begin(), want.end(), [](const SummaryItemImpl* a, const SummaryItemImpl* b) {
      const int order = a->place().display_order(b->place());
      return order != 0 ? order < 0 : a->handle() < b->handle();
    });
    for (std::size_t i = 0; i < kCount; ++i) {
      ASSERT_EQ(placed[i].item, want[i]) << before << ' ' << i;
      const bool sharesPlace = i != 0 && want[i - 1]->place().display_order(want[i]->place()) == 0;
      ASSERT_EQ(i != 0 && placed[i - 1].place == placed[i].place, sharesPlace) << i;
    }
  }
}

TEST(ItemSort, NoItemIsBeforeItsLeftNeighbourAndRowsHaveNoHistory) {
  for (unsigned int seed = 0; seed < 25; ++seed) {
    for (int number = -1; number <= kSummaryMappingCount; ++number) {
      const auto mapping = static_cast<SummaryMapping>(number);
      RandomItems random(seed);
      SummaryItems items = random.list(60 + seed);
      items.sort(mapping);
      for (std::size_t i = 1; i < items.size(); ++i) {
        ASSERT_FALSE(plainlyBefore(mapping, items[i], items[i - 1])) << number << " seed " << seed;
      }
      const std::string rows = support::rows(items);
      const auto sorted = pointers(items);
      items.sort(mapping);
      EXPECT_EQ(pointers(items), sorted);
      std::reverse(items.begin(), items.end());
      items.sort(mapping);
      EXPECT_EQ(support::rows(items), rows);
      std::shuffle(items.begin(), items.end(), random.engine());
      items.sort(mapping);
      ASSERT_EQ(support::rows(items), rows) << number << " seed " << seed;
    }
  }
}

TEST(ItemSort, EveryPairIsInOrderWhereTheOrderingIsStrictAndWeak) {
  for (unsigned int seed = 0; seed < 20; ++seed) {
    for (int number = 0; number < kSummaryMappingCount; ++number) {
      const auto mapping = static_cast<SummaryMapping>(number);
      RandomItems random(seed, true, true);
      SummaryItems items = random.list(50);
      items.sort(mapping);
      for (std::size_t i = 0; i < items.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) ASSERT_FALSE(plainlyBefore(mapping, items[i], items[j])) << number;
      }
    }
  }
}

TEST(ItemSort, WhatIsLeftUndecidedIsDecidedByPlaceThenKindsLabelAndHandle) {
  using support::detail;
  std::vector<support::FakeDetail> details{
      detail("b", "a.cpp:2"),
      detail("b", "a.cpp:1").reports(sitenotes::annotation_t::task),
      detail("a", "a.cpp:1").kind(digestio::kHotSpot),
      detail("c", "a.cpp:1"),
      detail("b", "a.cpp:1"),
  };
  SummaryItems items;
  for (auto& each : details) items.append(support::itemFrom(each.vectorization({.totalTime = 2}), {}, items.size()));
  items.append(support::itemFrom(details.back(), {}, 1));
  items.sort(kSortSurveyVectorizationTotalTime);
  std::string order;
  for (const auto& item : items) order += item->label() + std::to_string(item->handle()) + ' ';
  EXPECT_EQ(order, "b1 b4 c3 a2 b1 b0 ");
}

TEST(ItemSort, NaNsComeLastAndTheOrderingDoesNotDecideBetweenThem) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  support::FakeDetail task = support::detail("task", "a.cpp:1").reports(sitenotes::annotation_t::task);
  support::FakeDetail spot = support::detail("spot", "a.cpp:1").kind(digestio::kHotSpot);
  support::FakeDetail missing = support::detail("missing", "b.cpp:1").map();
  SummaryItems items = support::listOf(support::itemFrom(task.survey({.cpuTime = nan})),
                                       support::itemFrom(spot.survey({.cpuTime = nan})), support::itemFrom(missing));
  items.sort(kSortSurveyCpuTime);
  EXPECT_EQ(items[0]->label() + ' ' + items[1]->label() + ' ' + items[2]->label(), "missing spot task");
}

TEST(ItemSort, LeavesTheListAloneWhenSomethingFails) {
  struct Fixture {
    RandomItems random{11};
    SummaryItems items = random.list(30);
    std::vector<const SummaryItemImpl*> before = pointers(items);
  };
  const auto prepare = [] { return std::make_unique<Fixture>(); };
  const auto sort = [](Fixture& fixture) { fixture.items.sort(kSortCorrectnessErrors); };
  const auto check = [](Fixture& fixture) { EXPECT_EQ(pointers(fixture.items), fixture.before); };
  EXPECT_GT(support::atEveryFault<support::CallFault>(prepare, sort, check), 20);
  EXPECT_GT(support::atEveryFault<support::AllocationFault>(prepare, sort, check), 2);
}

}  // namespace
