#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sitenotes.h"
#include "view/RadixSort.h"

namespace kelvar_2_1_7 {

/// Sorts places nearly as they are shown: by the leaf of the file and the line. These are numbers, soon sorted, where
/// the order that counts, which is the collaborators' own, takes a call for each two that it compares. Knows the leaves
/// of one list of places when it comes to the next.
class LeafOrder {
 public:
  void clear() noexcept { places_.clear(); }
  void reserve(std::size_t count) { places_.reserve(count); }
  void add(const sitenotes::locator_t& place);
  /// To be asked once all places of a list were added. Those of one leaf and line have one key, and stand as they were
  /// added. Valid until the next one is added.
  [[nodiscard]] std::span<const NumberedKey> sorted();

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  using Leaves = std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>>;

  [[nodiscard]] std::uint32_t numberOf(const std::string& leaf);
  void rankLeaves();

  Leaves leaves_;  // each with a number
  const Leaves::value_type* last_ = nullptr;
  std::vector<std::uint32_t> ranks_;  // of leaves by number
  std::vector<NumberedKey> places_;
  std::vector<NumberedKey> buffer_;
};

}  // namespace kelvar_2_1_7
