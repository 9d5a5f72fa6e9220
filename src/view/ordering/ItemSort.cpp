#include "view/ordering/ItemSort.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "items/Groups.h"
#include "items/SummaryItems.h"
#include "view/ordering/KeySort.h"
#include "view/ordering/MergeSort.h"
#include "view/ordering/Orderings.h"

// Start from place order. Sort stably by the last key, then by the one before it, up to the first; each key is read
// once. Items that are equal on all keys are still in place order. Then, where the ordering says so, sort the items of
// each group that also share a place by isBeforeAtPlace. That relation may have cycles, so it is no key: a merge sort
// that is safe for any relation applies it.
//
// Invariant: no item comes before its left neighbour. O(n) for keys that are numbers, O(n log n) for labels.
// May read keys that are not needed.

namespace kelvar_2_1_7 {

namespace {

class ItemSort {
 public:
  ItemSort(const Ordering& ordering, std::span<const PlacedItem> items) : ordering_(ordering), items_(items) {
    order_.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) order_.push_back({0, static_cast<std::uint32_t>(i)});
  }

  std::vector<SummaryItemImpl*> sorted() {
    if (ordering_.byLabel) sortByLabel();
    readKeys();
    for (std::size_t key = ordering_.keys.size(); key-- > 0;) {
      if (varies(keys_[key])) sortBy(keys_[key]);
    }
    if (ordering_.thenByLocator != ThenByLocator::kNo) sortEqualsByLocator();
    std::vector<SummaryItemImpl*> items;
    items.reserve(order_.size());
    for (const KeyedIndex& each : order_) items.push_back(itemOf(each));
    return items;
  }

 private:
  [[nodiscard]] SummaryItemImpl* itemOf(const KeyedIndex& each) const noexcept { return items_[each.index].item; }

  void readKeys() {
    if (ordering_.keys.size() == 0) return;
    for (std::size_t key = 0; key < ordering_.keys.size(); ++key) keys_[key].resize(items_.size());
    for (std::size_t i = 0; i < items_.size(); ++i) {
      prefetchKeys(i);
      // After a NaN nothing decides any more: the later keys stay 0.
      for (std::size_t key = 0; key < ordering_.keys.size(); ++key) {
        keys_[key][i] = keyOf(ordering_.keys[key].read(*items_[i].item));
        if (keys_[key][i] == kUnordered) break;
      }
    }
  }

  /// The item, then the detail that the first key is read from.
  void prefetchKeys(std::size_t i) const {
    if (i + 2 * kPrefetchDistance < items_.size()) prefetch(items_[i + 2 * kPrefetchDistance].item);
    const auto& kind = ordering_.keys[0].kind;
    if (kind && i + kPrefetchDistance < items_.size()) {
      prefetchBeginning(items_[i + kPrefetchDistance].item->summaryDetail(*kind));
    }
  }

  static bool varies(const std::vector<std::uint64_t>& keys) {
    return std::adjacent_find(keys.begin(), keys.end(), std::not_equal_to<>()) != keys.end();
  }

  void sortBy(const std::vector<std::uint64_t>& keys) {
    for (KeyedIndex& each : order_) each.key = keys[each.index];
    sortByKey(std::span(order_), buffer_);
  }

  /// By the first bytes, which are a number, and then those that share them by the whole text.
  void sortByLabel() {
    for (std::size_t i = 0; i < order_.size(); ++i) {
      if (i + kPrefetchDistance < items_.size()) prefetch(items_[i + kPrefetchDistance].item);
      order_[i].key = beginningOf(items_[i].item->labelText());
    }
    sortByKey(std::span(order_), buffer_);
    const auto haveSameBeginning = [](const KeyedIndex& a, const KeyedIndex& b) { return a.key == b.key; };
    forEachGroup(std::span(order_), haveSameBeginning, [this](std::span<KeyedIndex> group) { sortByText(group); });
  }

  void sortByText(std::span<KeyedIndex> group) {
    struct Labelled {
      std::string_view label;
      KeyedIndex entry;
    };
    std::vector<Labelled> records;
    std::vector<Labelled> buffer;
    records.reserve(group.size());
    for (const KeyedIndex& each : group) records.push_back({itemOf(each)->labelText(), each});
    mergeSort(std::span(records), buffer, [](const Labelled& a, const Labelled& b) { return a.label < b.label; });
    for (std::size_t i = 0; i < group.size(); ++i) group[i] = records[i].entry;
  }

  /// Eight bytes as a number that orders as they do; what a short text lacks counts as zero bytes.
  static std::uint64_t beginningOf(std::string_view text) noexcept {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < sizeof word; ++i) {
      word = word << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
    }
    return word;
  }

  void sortEqualsByLocator() {
    const auto areEqual = [this](const KeyedIndex& a, const KeyedIndex& b) { return areEqualAtPlace(a, b); };
    forEachGroup(std::span(order_), areEqual, [this](std::span<KeyedIndex> group) { sortAtPlace(group); });
  }

  [[nodiscard]] bool areEqualAtPlace(const KeyedIndex& a, const KeyedIndex& b) const {
    if (items_[a.index].place != items_[b.index].place) return false;
    for (std::size_t key = 0; key < ordering_.keys.size(); ++key) {
      if (keys_[key][a.index] != keys_[key][b.index] || keys_[key][a.index] == kUnordered) return false;
    }
    if (ordering_.byLabel && itemOf(a)->labelText() != itemOf(b)->labelText()) return false;
    return goesByLocator(ordering_.thenByLocator, *itemOf(a));
  }

  void sortAtPlace(std::span<KeyedIndex> group) {
    struct AtPlace {
      SiteKey key;
      KeyedIndex entry;
    };
    std::vector<AtPlace> records;
    std::vector<AtPlace> buffer;
    records.reserve(group.size());
    const auto differ = [this](const KeyedIndex& a, const KeyedIndex& b) {
      return itemOf(a)->annotationKind() != itemOf(b)->annotationKind();
    };
    const bool withTimes = std::adjacent_find(group.begin(), group.end(), differ) != group.end();
    for (const KeyedIndex& each : group) records.push_back({SiteKey(*itemOf(each), withTimes), each});
    mergeSort(std::span(records), buffer,
              [](const AtPlace& a, const AtPlace& b) { return isBeforeAtPlace(a.key, b.key); });
    for (std::size_t i = 0; i < group.size(); ++i) group[i] = records[i].entry;
  }

  const Ordering& ordering_;
  const std::span<const PlacedItem> items_;
  std::vector<KeyedIndex> order_;
  std::vector<KeyedIndex> buffer_;
  std::array<std::vector<std::uint64_t>, SortKeys::kMost> keys_;  // by index of the items
};

}  // namespace

std::vector<SummaryItemImpl*> sorted(SummaryMapping mapping, std::span<const PlacedItem> byPlace) {
  return ItemSort(orderingOf(mapping), byPlace).sorted();
}

void SummaryItems::sort(SummaryMapping mapping) {
  std::vector<SummaryItemImpl*> items;
  appendItems(items, *this);
  reorder(sorted(mapping, placeOrder(items)));
}

}  // namespace kelvar_2_1_7
