// Whether the one sort copes with every relation, and orders what an ordering leaves undecided.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

#include "items/PlaceOrder.h"
#include "support/Faults.h"
#include "support/Rows.h"
#include "view/KeySort.h"
#include "view/MergeSort.h"
#include "view/PlaceSort.h"
#include "view/PlainOrderings.h"
#include "view/RandomItems.h"

using namespace kelvar_2_1_7;

namespace {

struct Numbered {
  std::uint64_t key;
  std::size_t number;
  bool operator==(const Numbered&) const = default;
};

/// Too large to be moved again and again.
struct Large : Numbered {
  std::array<std::uint64_t, 2> more{};
  bool operator==(const Large&) const = default;
};

/// Records of few keys or of many, as a sort may find them.
template <class Record>
std::vector<Record> someRecords(int round, std::mt19937_64& engine) {
  const std::uint64_t keys = round % 5 == 0 ? 1000 : round % 5 == 1 ? std::numeric_limits<std::uint64_t>::max() : 30;
  std::vector<Record> records(engine() % (round % 50 == 0 ? 3000 : 40));
  for (std::size_t i = 0; i < records.size(); ++i) {
    const bool lacksNumber = round % 7 == 0 && engine() % 3 != 0;
    records[i].key = lacksNumber ? keys : engine() % keys;
    records[i].number = i;
  }
  const auto middle = records.begin() + static_cast<std::ptrdiff_t>(records.size() / 2);
  if (round % 3 == 1) std::stable_sort(middle, records.end(), kByKey);
  if (round % 3 == 2) std::stable_sort(records.rbegin(), records.rend(), kByKey);
  if (round % 6 == 0) std::stable_sort(records.begin(), middle, kByKey);
  return records;
}

template <class Record>
void sortAndCompare() {
  std::mt19937_64 engine(3);
  std::vector<Record> buffer;
  for (int round = 0; round < 3000; ++round) {
    std::vector<Record> records = someRecords<Record>(round, engine);
    std::vector<Record> want = records;
    std::stable_sort(want.begin(), want.end(), kByKey);
    round % 2 == 0 ? sortByKey(std::span(records), buffer) : mergeSort(std::span(records), buffer, kByKey);
    ASSERT_EQ(records, want) << round;
  }
}

TEST(KeySort, SortsAsAStableSortDoes) {
  sortAndCompare<Numbered>();
  sortAndCompare<Large>();
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

/// Records at few places up to the end of the first and from the beginning of the second sorted part.
std::vector<Placed> somePlaces(std::size_t count, std::size_t sortedBefore, std::size_t sortedBehind) {
  std::mt19937 engine(7);
  std::vector<Placed> records;
  while (records.size() < count) {
    const std::string file = std::string(1, static_cast<char>('a' + engine() % 2)) + "/leaf" + "xyz"[engine() % 3];
    const int line = static_cast<int>(engine() % 400) - 200;
    const int column = static_cast<int>(engine() % 3);
    records.push_back({sitenotes::locator_t(toolbelt::path_t(file), line, column), records.size()});
  }
  const auto at = [&](std::size_t index) { return records.begin() + static_cast<std::ptrdiff_t>(index); };
  std::stable_sort(at(0), at(sortedBefore), standsBefore<Placed>);
  std::stable_sort(at(count - sortedBehind), at(count), standsBefore<Placed>);
  return records;
}

template <class Record>
void sortAndCompare(std::vector<Record> records) {
  std::vector<Record> want = records;
  std::stable_sort(want.begin(), want.end(), standsBefore<Record>);
  std::vector<Record> buffer;
  PlaceSort(buffer).sort(records);
  for (std::size_t i = 0; i < records.size(); ++i) {
    ASSERT_EQ(records[i].index, want[i].index) << i;
    const bool isOfNextPlace = i != 0 && standsBefore(records[i - 1], records[i]);
    ASSERT_EQ(records[i].key, i == 0 ? 0 : records[i - 1].key + (isOfNextPlace ? 1 : 0)) << i;
  }
}

TEST(PlaceSort, SortsAsAStableSortDoesWhateverStandsAlready) {
  constexpr std::size_t kCount = 9000;  // enough to be arranged first
  const std::pair<std::size_t, std::size_t> sorted[] = {{0, 0},       {kCount, 0},  {1, kCount - 1},
                                                        {4000, 5000}, {2000, 2500}, {4000, 4900}};
  for (const auto& [before, behind] : sorted) {
    SCOPED_TRACE(before);
    sortAndCompare(somePlaces(kCount, before, behind));
  }
}

/// A suite may show places the other way around.
struct PlaceFromTheEnd : sitenotes::locator_t {
  [[nodiscard]] int display_order(const PlaceFromTheEnd& other) const { return other.locator_t::display_order(*this); }
};
struct PlacedFromTheEnd {
  PlaceFromTheEnd place;
  std::size_t index;
  std::uint64_t key;
};

TEST(PlaceSort, LeavesTheLastWordToTheOrderOfPlaces) {
  std::vector<PlacedFromTheEnd> records;
  for (const Placed& site : somePlaces(9000, 0, 0)) records.push_back({{site.place}, site.index, 0});
  sortAndCompare(records);
}

TEST(ItemSort, NoNeighbourStandsBeforeTheOneInFrontOfItAndRowsHaveNoHistory) {
  for (unsigned int seed = 0; seed < 25; ++seed) {
    for (int number = -1; number <= kSummaryMappingCount; ++number) {
      const auto mapping = static_cast<SummaryMapping>(number);
      RandomItems random(seed);
      const bool many = seed == 0 && mapping == kSortLocator;  // so many are arranged before they are merged
      SummaryItems items = random.list(many ? 9000 : 60 + seed);
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

TEST(ItemSort, SortsInWhatIsLooseAsItSortsAll) {
  for (unsigned int seed = 0; seed < 300; ++seed) {
    RandomItems random(seed);
    SummaryItems items;
    while (items.size() < 60 + seed % 7 * 40) items.append(random.item());
    items.sort(kSortKind);
    std::vector<std::size_t> loose;
    for (std::size_t slot = 0; slot < items.size(); ++slot) {
      if (random.below(seed % 2 == 0 ? 3 : 12) != 0) continue;
      loose.push_back(slot);
      if (random.below(2) == 0) items.begin()[static_cast<std::ptrdiff_t>(slot)] = random.item();
    }
    const auto before = pointers(items);
    const std::vector<bool> isNew = items.sortIn(kSortKind, loose);
    for (std::size_t slot = 0; slot < items.size(); ++slot) {
      if (isNew[slot]) continue;
      const auto stood =
          static_cast<std::size_t>(std::find(before.begin(), before.end(), items[slot]) - before.begin());
      ASSERT_FALSE(std::binary_search(loose.begin(), loose.end(), stood)) << seed;
      const bool hasNewBefore = slot != 0 && isNew[slot - 1];
      ASSERT_TRUE(hasNewBefore || (slot == 0 ? stood == 0 : stood != 0 && before[stood - 1] == items[slot - 1]))
          << seed;
    }
    const std::string rows = support::rows(items);
    items.sort(kSortKind);
    ASSERT_EQ(rows, support::rows(items)) << seed;
  }
}

TEST(ItemSort, EveryPairStandsInItsOrderWhereTheOrderingIsOne) {
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

TEST(ItemSort, WhatIsLeftUndecidedStandsByPlaceThenKindsLabelAndHandle) {
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

TEST(ItemSort, WhatIsNoNumberStandsLastAndTheOrderingHasNoSayInIt) {
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
