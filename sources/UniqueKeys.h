#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Likeness.h"

namespace kelvar_sources {

/// Pairs known and seen sites whose key is unique on both sides. All known sites must be added first.
class UniqueKeys {
 public:
  void addKnown(const Key& key, std::size_t index) {
    Holders& holders = byKey_[key];
    ++holders.knownCount;
    holders.known = index;
  }

  void addSeen(const Key& key, std::size_t index) {
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) return;
    ++found->second.seenCount;
    found->second.seen = index;
  }

  [[nodiscard]] bool empty() const noexcept { return byKey_.empty(); }

  /// The pairs in no particular order; no site is in two of them.
  [[nodiscard]] std::vector<std::pair<std::size_t, std::size_t>> pairs() const {
    std::vector<std::pair<std::size_t, std::size_t>> all;
    for (const auto& [key, holders] : byKey_) {
      if (holders.knownCount == 1 && holders.seenCount == 1) all.emplace_back(holders.known, holders.seen);
    }
    return all;
  }

 private:
  struct Holders {
    std::size_t known = 0;
    std::size_t seen = 0;
    std::size_t knownCount = 0;
    std::size_t seenCount = 0;
  };
  std::unordered_map<Key, Holders, KeyHash> byKey_;
};

}  // namespace kelvar_sources
