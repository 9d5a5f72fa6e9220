#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <vector>

namespace kelvar_2_1_7 {

class SummaryItemImpl;

/// Which item of a list a handle names: of several, the last. Databases number their sites without large gaps, as a
/// rule: then a handle is a place in an array.
class HandleIndex {
 public:
  explicit HandleIndex(std::size_t itemCount) noexcept : denseEnd_(kGaps * itemCount) {}

  void name(unsigned long handle, SummaryItemImpl& item) {
    if (handle >= denseEnd_) {
      sparse_.insert_or_assign(handle, &item);
      return;
    }
    if (handle >= dense_.size()) dense_.resize(handle + 1, nullptr);
    dense_[handle] = &item;
  }

  /// Null for a handle that names none.
  [[nodiscard]] SummaryItemImpl* find(unsigned long handle) const {
    if (handle < dense_.size()) return dense_[handle];
    const auto known = sparse_.find(handle);
    return known != sparse_.end() ? known->second : nullptr;
  }
  /// Has the processor fetch what find(handle) is going to read.
  void prefetch(unsigned long handle) const noexcept {
    if (handle < dense_.size()) __builtin_prefetch(&dense_[handle]);
  }

 private:
  static constexpr std::size_t kGaps = 4;

  std::size_t denseEnd_;
  std::vector<SummaryItemImpl*> dense_;
  boost::unordered_flat_map<unsigned long, SummaryItemImpl*> sparse_;
};

}  // namespace kelvar_2_1_7
