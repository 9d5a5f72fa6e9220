#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// A number of a site in some list, behind a hash of the label and the annotation kind that it is looked up by: sorted,
/// like names stand together.
using NameKey = std::uint64_t;
using NameKeys = std::vector<NameKey>;

constexpr NameKey nameKey(std::uint32_t labelHash, sitenotes::annotation_t::kind_t kind, std::uint32_t number) {
  constexpr std::uint64_t kSpread = 0x9e3779b97f4a7c15;  // the golden ratio's bits: every one of a kind changes many
  constexpr std::uint64_t kNumber = std::numeric_limits<std::uint32_t>::max();
  const std::uint64_t hash = (std::uint64_t{static_cast<std::uint32_t>(kind)} << 32 | labelHash) * kSpread;
  return (hash & ~kNumber) | number;
}
constexpr std::uint32_t numberOf(NameKey key) {
  return static_cast<std::uint32_t>(key);
}
constexpr std::uint64_t hashOf(NameKey key) {
  return key >> 32;
}

/// A task is folded into the task loop of its label.
constexpr sitenotes::annotation_t::kind_t kTakenIn = sitenotes::annotation_t::task;
constexpr sitenotes::annotation_t::kind_t kTaker = sitenotes::annotation_t::taskloop;

/// The names of some sites, and those that tasks among them look for.
struct SiteNames {
  NameKeys keys;    // by label and kind
  NameKeys wanted;  // by the label and kind of who would take the site in

  void add(std::uint32_t labelHash, sitenotes::annotation_t::kind_t kind, std::uint32_t number) {
    keys.push_back(nameKey(labelHash, kind, number));
    if (kind == kTakenIn) wanted.push_back(nameKey(labelHash, kTaker, number));
  }
};

/// Which hashes came more than once, and by chance a few others: bits that two passes over all keys cost far less than
/// it does to sort them.
class SeenTwice {
 public:
  explicit SeenTwice(std::size_t count)
      : words_(std::bit_ceil(std::max(count, std::size_t{8})) / 8) {}  // eight bits for each

  void see(NameKey key) noexcept {
    Word& word = words_[wordOf(key)];
    word.twice |= word.once & bitOf(key);
    word.once |= bitOf(key);
  }
  [[nodiscard]] bool has(NameKey key) const noexcept { return (words_[wordOf(key)].twice & bitOf(key)) != 0; }

 private:
  /// Side by side: who looks at one looks at the other.
  struct Word {
    std::uint64_t once = 0;
    std::uint64_t twice = 0;
  };

  [[nodiscard]] std::size_t wordOf(NameKey key) const noexcept { return (hashOf(key) >> 6) & (words_.size() - 1); }
  static constexpr std::uint64_t bitOf(NameKey key) noexcept { return std::uint64_t{1} << (hashOf(key) & 63); }

  std::vector<Word> words_;
};

}  // namespace kelvar_2_1_7
