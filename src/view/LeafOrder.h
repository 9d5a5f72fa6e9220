#pragma once

#include <boost/container_hash/hash.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// Numbers places nearly as they are shown: by the leaf of the file and the line. Places that stand in this order are
/// soon sorted by the one that counts, which is the collaborators' own and takes a call for each two it compares.
class LeafOrder {
 public:
  /// Which leaf the place has, of those that were seen so far.
  std::uint32_t leafOf(const sitenotes::locator_t& place);
  /// To be asked once all leaves were seen.
  void rankLeaves();
  [[nodiscard]] std::uint64_t numberOf(std::uint32_t leaf, const sitenotes::locator_t& place) const noexcept {
    constexpr std::uint32_t kLeast = std::uint32_t{1} << 31;
    return std::uint64_t{ranks_[leaf]} << 32 | (static_cast<std::uint32_t>(place.get_line()) ^ kLeast);
  }

 private:
  struct Hash : boost::hash<std::string_view> {
    using is_transparent = void;
  };
  boost::unordered_flat_map<std::string, std::uint32_t, Hash, std::equal_to<>> leaves_;
  std::vector<std::uint32_t> ranks_;  // by leaf
};

}  // namespace kelvar_2_1_7
