#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "items/SummaryItems.h"
#include "view/MergeSort.h"
#include "view/Orderings.h"
#include "view/RadixSort.h"
#include "view/SortKeys.h"

namespace kelvar_2_1_7 {

namespace {

/// Sorts items that have their ranks: by rank first, which costs no comparison, and then stably by the numbers of the
/// ordering, from the last to the first. Each item is visited once.
class RankedSort {
 public:
  explicit RankedSort(const Ordering& ordering) : ordering_(ordering) {
    while (count_ < ordering.numbers.size() && ordering.numbers[count_].read != nullptr) ++count_;
  }

  std::vector<SummaryItemImpl*> orderOf(const SummaryItems& items) {
    read(items);
    for (std::size_t number = count_; number-- > 0;) sortBy(keys_[number]);
    sortSites();
    std::vector<SummaryItemImpl*> order;
    order.reserve(entries_.size());
    for (const Entry& entry : entries_) order.push_back(items_[entry.rank]);
    return order;
  }

 private:
  struct Entry {
    std::uint64_t key;
    std::size_t rank;
  };

  void read(const SummaryItems& items) {
    makeRoom(items.size());
    for (std::size_t index = 0; index < items.size(); ++index) {
      callAhead(items, index);
      if (items[index] != nullptr) read(*items[index]);
    }
    entries_.reserve(items.size());
    for (std::size_t rank = 0; rank < items_.size(); ++rank) {
      if (items_[rank] != nullptr) entries_.push_back({0, rank});
    }
  }

  void read(SummaryItemImpl& item) {
    const std::size_t rank = item.placeRank();
    if (rank >= items_.size()) makeRoom(rank + 1);  // others that are hidden stand before it
    items_[rank] = &item;
    sharesPlace_[rank] = item.sharesPlace();
    for (std::size_t number = 0; number < count_; ++number) {
      const std::uint64_t key = keyOf(ordering_.numbers[number].read(item));
      keys_[number][rank] = key;
      if (key == kUnordered) break;  // it has nothing more to say of what is no number
    }
  }

  void makeRoom(std::size_t ranks) {
    items_.resize(ranks);
    sharesPlace_.resize(ranks);
    for (std::size_t number = 0; number < count_; ++number) keys_[number].resize(ranks);
  }

  /// Items and their details lie anywhere in memory: they are called for some steps ahead.
  void callAhead(const SummaryItems& items, std::size_t index) const {
    constexpr std::size_t kStep = 16;
    const digestio::SummaryDataKind kind = ordering_.numbers.front().kind;
    if (index + 2 * kStep < items.size()) items.call(index + 2 * kStep);
    if (index + kStep < items.size() && items[index + kStep] != nullptr) {
      __builtin_prefetch(items[index + kStep]->summaryDetail(kind));
    }
  }

  void sortBy(const std::vector<std::uint64_t>& keys) {
    for (Entry& entry : entries_) entry.key = keys[entry.rank];
    radixSort(std::span(entries_), buffer_);
  }

  /// Sites of one place that the numbers leave equal stand as the ordering by locator has them.
  void sortSites() {
    for (std::size_t begin = 0; begin < entries_.size();) {
      std::size_t end = begin + 1;
      while (end < entries_.size() && standTogether(entries_[begin], entries_[end])) ++end;
      if (end - begin > 1 && goesByLocator(ordering_.tie, *items_[entries_[begin].rank])) sortSites(begin, end);
      begin = end;
    }
  }
  void sortSites(std::size_t begin, std::size_t end) {
    sites_.clear();
    for (std::size_t i = begin; i < end; ++i) sites_.push_back({Site(*items_[entries_[i].rank]), entries_[i].rank});
    mergeSort(std::span(sites_), sitesBuffer_,
              [](const RankedSite& a, const RankedSite& b) { return siteBefore(a.site, b.site); });
    for (std::size_t i = begin; i < end; ++i) entries_[i].rank = sites_[i - begin].rank;
  }

  [[nodiscard]] bool standTogether(const Entry& first, const Entry& next) const {
    if (!sharesPlace_[next.rank]) return false;
    for (std::size_t number = 0; number < count_; ++number) {
      const std::uint64_t key = keys_[number][first.rank];
      if (key != keys_[number][next.rank] || key == kUnordered) return false;
    }
    return items_[first.rank]->place().display_order(items_[next.rank]->place()) == 0;
  }

  struct RankedSite {
    Site site;
    std::size_t rank;
  };

  const Ordering& ordering_;
  std::size_t count_ = 0;                                                                        // of numbers
  std::vector<SummaryItemImpl*> items_;                                                          // by rank
  std::vector<bool> sharesPlace_;                                                                // by rank
  std::array<std::vector<std::uint64_t>, std::tuple_size_v<decltype(Ordering::numbers)>> keys_;  // by rank
  std::vector<Entry> entries_;
  std::vector<Entry> buffer_;
  std::vector<RankedSite> sites_;
  std::vector<RankedSite> sitesBuffer_;
};

}  // namespace

void SummaryItems::sortRanked(SummaryMapping mapping) {
  const Ordering& ordering = orderingOf(mapping);
  if (ordering.byLabel) return sort(mapping);  // few sites share a label: there is little that ranks could spare
  takeOrder(RankedSort(ordering).orderOf(*this));
}

}  // namespace kelvar_2_1_7
