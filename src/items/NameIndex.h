#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "items/CallLine.h"
#include "items/NameKeys.h"

namespace kelvar_2_1_7 {

/// Finds, among many sites, those of a name. What tells names apart is a hash: by chance it may find others too.
class NameIndex {
 public:
  using Number = std::uint32_t;

  NameIndex() = default;
  /// Of fewer sites than 2^31, each of which may look for a name besides its own.
  explicit NameIndex(const SiteNames& names);

  /// Ascending, the sites that share a name, or that one of them looks for, with another.
  [[nodiscard]] const std::vector<Number>& related() const noexcept { return related_; }
  /// Those that have the name of a key or look for it. If they are more than one, all of them are related.
  [[nodiscard]] std::span<const NameKey> of(NameKey key) const noexcept;

  /// Has the processor fetch what of(key) is going to read: first where that begins, then what is there.
  void callBegin(NameKey key) const noexcept {
    if (!begins_.empty()) callLine(&begins_[bucketOf(key)]);
  }
  void callKeys(NameKey key) const noexcept {
    if (!begins_.empty()) callLine(keys_.data() + begins_[bucketOf(key)]);
  }

 private:
  [[nodiscard]] std::size_t bucketOf(NameKey key) const noexcept { return static_cast<std::size_t>(key >> shift_); }
  void distribute(const NameKeys& keys);
  void sortBuckets();
  void findRelated();

  unsigned shift_ = 0;
  std::vector<std::uint32_t> begins_;  // by bucket, and the end of the last one; empty without names
  NameKeys keys_;                      // ascending
  std::vector<Number> related_;
};

}  // namespace kelvar_2_1_7
