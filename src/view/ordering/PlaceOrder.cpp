#include "view/ordering/PlaceOrder.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "declarations.h"
#include "items/Groups.h"
#include "view/ordering/KeySort.h"
#include "view/ordering/MergeSort.h"
#include "view/ordering/TieBreak.h"

// Places are compared by the suite, one call per pair. Places in no order are therefore arranged first by what usually
// decides: the leaf of the file and the line, which are numbers once the leaves are ranked, and quickly sorted. Then
// the suite's own order is asked for each pair of neighbours, and has the last word: where it disagrees, a merge sort
// by it follows. A list that consists of a few sorted runs is merged at once. Mostly two calls per item, O(n log n) at
// most.

namespace kelvar_2_1_7 {

namespace {

struct ItemAndPlace {
  sitenotes::locator_t place;
  SummaryItemImpl* item;
};

bool isBefore(const ItemAndPlace& a, const ItemAndPlace& b) {
  return displayOrder(a.place, b.place) < 0;
}

/// Leaves as numbers in the order of their bytes.
class LeafRanks {
 public:
  /// A number for the leaf, not yet ranked.
  [[nodiscard]] std::uint32_t numberOf(std::string_view leaf) {
    // Neighbours are usually of one file.
    if (last_ != nullptr && last_->first == leaf) return last_->second;
    auto known = numbers_.find(leaf);
    if (known == numbers_.end()) known = numbers_.emplace(leaf, static_cast<std::uint32_t>(numbers_.size())).first;
    last_ = &*known;
    return known->second;
  }
  /// The rank of each number.
  [[nodiscard]] std::vector<std::uint32_t> ranks() const {
    std::vector<const Numbers::value_type*> leaves;
    for (const auto& leaf : numbers_) leaves.push_back(&leaf);
    std::sort(leaves.begin(), leaves.end(), [](const auto* a, const auto* b) { return a->first < b->first; });
    std::vector<std::uint32_t> ranks(leaves.size());
    for (std::uint32_t rank = 0; rank < leaves.size(); ++rank) ranks[leaves[rank]->second] = rank;
    return ranks;
  }

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  using Numbers = std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>>;

  Numbers numbers_;
  const Numbers::value_type* last_ = nullptr;
};

/// An unsigned number in the order of lines.
std::uint32_t bitsOf(int line) noexcept {
  return static_cast<std::uint32_t>(line) ^ std::uint32_t{1} << 31;
}

/// The records' indices by leaf and line.
std::vector<KeyedIndex> byLeafAndLine(const std::vector<ItemAndPlace>& records) {
  LeafRanks leaves;
  std::vector<KeyedIndex> order;
  std::vector<KeyedIndex> buffer;
  order.reserve(records.size());
  for (const ItemAndPlace& record : records) {
    const std::uint64_t leaf = withLeaf(record.place, [&](std::string_view name) { return leaves.numberOf(name); });
    order.push_back({leaf << 32 | bitsOf(record.place.get_line()), static_cast<std::uint32_t>(order.size())});
  }
  const std::vector<std::uint32_t> ranks = leaves.ranks();
  for (KeyedIndex& each : order) {
    each.key = std::uint64_t{ranks[each.key >> 32]} << 32 | static_cast<std::uint32_t>(each.key);
  }
  sortByKey(std::span(order), buffer);
  return order;
}

void arrange(std::vector<ItemAndPlace>& records, std::vector<ItemAndPlace>& buffer) {
  std::vector<KeyedIndex> order = byLeafAndLine(records);
  std::vector<ItemAndPlace> arranged;
  arranged.reserve(records.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i + kPrefetchDistance < order.size()) prefetchLine(&records[order[i + kPrefetchDistance].index]);
    arranged.push_back(records[order[i].index]);
  }
  records.swap(arranged);
  const auto haveSameKey = [](const KeyedIndex& a, const KeyedIndex& b) { return a.key == b.key; };
  forEachGroup(std::span(order), haveSameKey, [&](std::span<KeyedIndex> group) {
    mergeSort(std::span(records).subspan(static_cast<std::size_t>(group.data() - order.data()), group.size()), buffer,
              isBefore);
  });
}

/// In how many places a list descends; counts no further than `most`.
int descentsIn(const std::vector<ItemAndPlace>& records, int most) {
  int descents = 0;
  for (std::size_t i = 1; i < records.size() && descents < most; ++i) {
    if (isBefore(records[i], records[i - 1])) ++descents;
  }
  return descents;
}

void sortByPlace(std::vector<ItemAndPlace>& records) {
  constexpr int kManyRuns = 32;
  std::vector<ItemAndPlace> buffer;
  const int descents = descentsIn(records, kManyRuns);
  if (descents == kManyRuns) arrange(records, buffer);
  if (descents != 0) mergeSort(std::span(records), buffer, isBefore);
}

void breakTiesOf(std::span<PlacedItem> atOnePlace) {
  std::vector<SummaryItemImpl*> items;
  for (const PlacedItem& placed : atOnePlace) items.push_back(placed.item);
  breakTies(items);
  for (std::size_t i = 0; i < items.size(); ++i) atOnePlace[i].item = items[i];
}

}  // namespace

void appendItems(std::vector<SummaryItemImpl*>& items, const SummaryItems& list) {
  items.reserve(items.size() + list.size());
  for (const SummaryItems::value_type& item : list) {
    if (item) items.push_back(item.get());
  }
}

std::vector<PlacedItem> placeOrder(const std::vector<SummaryItemImpl*>& items) {
  std::vector<ItemAndPlace> records;
  records.reserve(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i + kPrefetchDistance < items.size()) prefetchLine(&items[i + kPrefetchDistance]->place());
    records.push_back({items[i]->place(), items[i]});
  }
  sortByPlace(records);

  std::vector<PlacedItem> placed;
  placed.reserve(records.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    const bool sharesPlace = i != 0 && !isBefore(records[i - 1], records[i]);
    placed.push_back({records[i].item, sharesPlace ? placed.back().place : static_cast<std::uint32_t>(i)});
  }
  breakTiesAnew(placed);
  return placed;
}

void breakTiesAnew(std::span<PlacedItem> byPlace) {
  const auto haveSamePlace = [](const PlacedItem& a, const PlacedItem& b) { return a.place == b.place; };
  forEachGroup(byPlace, haveSamePlace, breakTiesOf);
}

}  // namespace kelvar_2_1_7
