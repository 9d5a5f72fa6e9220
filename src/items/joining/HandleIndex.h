#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <vector>

#include "items/Prefetch.h"
#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// Which item has a handle. Databases usually number their sites without large gaps: then a handle is an index into
/// an array, and only the others are hashed.
class HandleIndex {
 public:
  /// `itemCount` is an estimate.
  explicit HandleIndex(std::size_t itemCount) : denseEnd_(kGaps * itemCount) {}

  /// Of several items with one handle, the one inserted last is found.
  void insert(unsigned long handle, SummaryItemImpl* item) {
    if (handle >= denseEnd_) {
      sparse_[handle] = item;
      return;
    }
    if (handle >= dense_.size()) dense_.resize(handle + 1, nullptr);
    dense_[handle] = item;
  }
  /// Null if no item has it.
  [[nodiscard]] SummaryItemImpl* find(unsigned long handle) const {
    if (handle < dense_.size()) return dense_[handle];
    const auto found = sparse_.find(handle);
    return found != sparse_.end() ? found->second : nullptr;
  }
  /// Prefetches what find(handle) reads.
  void prefetchSlot(unsigned long handle) const noexcept {
    if (handle < dense_.size()) prefetchLine(&dense_[handle]);
  }

 private:
  static constexpr std::size_t kGaps = 4;

  std::size_t denseEnd_;
  std::vector<SummaryItemImpl*> dense_;
  boost::unordered_flat_map<unsigned long, SummaryItemImpl*> sparse_;
};

}  // namespace kelvar_2_1_7
