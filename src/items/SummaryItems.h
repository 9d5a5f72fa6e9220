#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "SummaryItemImpl.h"
#include "digestio.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// A list that owns its items. Entries may be null; every operation survives that.
class SummaryItems {
 public:
  using value_type = std::unique_ptr<SummaryItemImpl>;

  [[nodiscard]] std::size_t size() const noexcept { return items_.size(); }
  [[nodiscard]] bool empty() const noexcept { return items_.empty(); }
  [[nodiscard]] SummaryItemImpl* operator[](std::size_t index) const noexcept { return items_[index].get(); }
  [[nodiscard]] auto begin() noexcept { return items_.begin(); }
  [[nodiscard]] auto end() noexcept { return items_.end(); }
  [[nodiscard]] auto begin() const noexcept { return items_.begin(); }
  [[nodiscard]] auto end() const noexcept { return items_.end(); }

  void reserve(std::size_t count) { items_.reserve(count); }
  void append(value_type item) { items_.push_back(std::move(item)); }
  /// Drops the entries from `count` on, with their items.
  void truncate(std::size_t count) noexcept {
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(count), items_.end());
  }
  void clear() noexcept { items_.clear(); }
  void swap(SummaryItems& other) noexcept { items_.swap(other.items_); }

  /// Orders the list. Stable, and safe for orderings that are no strict weak order: terminates in O(n log n) with
  /// the same items. What an ordering leaves undecided stands as SummaryMapping says. Either done or, when an
  /// exception passes, not begun. Defined with the view.
  void sort(SummaryMapping mapping);

  /// Folds the items that stand for one site, so that a result lists each site once. `kind` chooses the order in
  /// which they are looked at, and which is left: vectorization self time or place.
  void exactMerge(digestio::SummaryDataKind kind);

  /// The list as a fixed-width table, with the column groups of the kinds that are asked for. Defined with the view.
  [[nodiscard]] std::string asString(bool verbose, bool survey, bool surveyVectorization, bool suitability,
                                     bool correctness, bool map) const;

 private:
  std::vector<value_type> items_;
};

}  // namespace kelvar_2_1_7
