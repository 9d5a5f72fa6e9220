#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "items/Prefetch.h"
#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// A list that owns its items. Entries may be null; every operation survives that.
class SummaryItems {
 public:
  using value_type = std::unique_ptr<SummaryItemImpl>;

  SummaryItems() noexcept = default;
  SummaryItems(SummaryItems&&) noexcept = default;
  SummaryItems& operator=(SummaryItems&&) noexcept = default;
  ~SummaryItems() { clear(); }

  [[nodiscard]] std::size_t size() const noexcept { return items_.size(); }
  [[nodiscard]] bool empty() const noexcept { return items_.empty(); }
  [[nodiscard]] SummaryItemImpl* operator[](std::size_t index) const noexcept { return items_[index].get(); }
  [[nodiscard]] auto begin() noexcept { return items_.begin(); }
  [[nodiscard]] auto end() noexcept { return items_.end(); }
  [[nodiscard]] auto begin() const noexcept { return items_.begin(); }
  [[nodiscard]] auto end() const noexcept { return items_.end(); }

  /// For walks over the list that are at `index`: prefetches the item that comes kPrefetchDistance later.
  void prefetchAfter(std::size_t index) const noexcept {
    if (index + kPrefetchDistance < items_.size()) prefetch(items_[index + kPrefetchDistance].get());
  }

  void reserve(std::size_t count) { items_.reserve(count); }
  void append(value_type item) { items_.push_back(std::move(item)); }
  void append(SummaryItemImpl* item) { append(value_type(item)); }
  void clear() noexcept {
    for (std::size_t index = 0; index < items_.size(); ++index) {
      prefetchAfter(index);
      items_[index].reset();
    }
    items_.clear();
  }
  /// Removes null entries; the others keep their order.
  void removeNulls() noexcept { std::erase(items_, nullptr); }
  void swap(SummaryItems& other) noexcept { items_.swap(other.items_); }
  /// Puts the list's items, each of which is in `order` once, in that order; null entries come last.
  void reorder(const std::vector<SummaryItemImpl*>& order) noexcept;

  /// Orders the list. Safe for orderings that are no strict weak order: terminates in O(n log n) with the same items.
  /// What an ordering leaves undecided is decided as SummaryMapping says. When an exception passes, the list is as it
  /// was. Defined in view/ordering/ItemSort.cpp.
  void sort(SummaryMapping mapping);

  /// Folds the items that are one site, so that each site of a result is listed once. `kind`, the result's own, chooses
  /// the ordering in which neighbours are compared and in which the list is left: vectorization self time or place.
  /// When an exception passes, what is left may only be destroyed.
  void exactMerge(digestio::SummaryDataKind kind);

  /// The list as a fixed-width table, with the column groups of the kinds that are asked for. Defined in
  /// view/report/ItemTable.cpp.
  [[nodiscard]] std::string asString(bool verbose, bool survey, bool surveyVectorization, bool suitability,
                                     bool correctness, bool map) const;

 private:
  std::vector<value_type> items_;
};

}  // namespace kelvar_2_1_7
