#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <utility>
#include <vector>

#include "CallLine.h"

namespace kelvar_2_1_7 {

class SummaryItemImpl;

/// Which item of a list a handle names: of several, the last. Databases number their sites without large gaps, as a
/// rule: then a handle is a place in an array.
class HandleIndex {
 public:
  explicit HandleIndex(std::size_t itemCount = 0) noexcept : denseEnd_(kGaps * itemCount) {}

  void name(unsigned long handle, SummaryItemImpl& item) {
    SummaryItemImpl* const before = std::exchange(placeOf(handle), &item);
    if (before != nullptr && before != &item) hasTwins_ = true;
  }
  /// The handle names the item no more, if it did.
  void forget(unsigned long handle, const SummaryItemImpl& item) noexcept {
    if (find(handle) != &item) return;
    if (handle < dense_.size()) {
      dense_[handle] = nullptr;
    } else {
      sparse_.erase(handle);
    }
  }
  /// Whether a handle ever named a second item while it named a first one.
  [[nodiscard]] bool hasTwins() const noexcept { return hasTwins_; }

  /// Null for a handle that names none.
  [[nodiscard]] SummaryItemImpl* find(unsigned long handle) const {
    if (handle < dense_.size()) return dense_[handle];
    const auto known = sparse_.find(handle);
    return known != sparse_.end() ? known->second : nullptr;
  }
  /// Has the processor fetch what find(handle) is going to read.
  void prefetch(unsigned long handle) const noexcept {
    if (handle < dense_.size()) callLine(&dense_[handle]);
  }

 private:
  static constexpr std::size_t kGaps = 4;

  SummaryItemImpl*& placeOf(unsigned long handle) {
    if (handle >= denseEnd_) return sparse_[handle];
    if (handle >= dense_.size()) dense_.resize(handle + 1, nullptr);
    return dense_[handle];
  }

  std::size_t denseEnd_;
  std::vector<SummaryItemImpl*> dense_;
  boost::unordered_flat_map<unsigned long, SummaryItemImpl*> sparse_;
  bool hasTwins_ = false;
};

}  // namespace kelvar_2_1_7
