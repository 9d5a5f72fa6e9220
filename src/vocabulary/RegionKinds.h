#pragma once

#include <algorithm>
#include <array>
#include <optional>

#include "kinds.h"

namespace kelvar_2_1_7 {

/// An annotation kind that opens a region of the source, and the kind that closes it.
struct RegionKinds {
  sitenotes::annotation_t::kind_t begin;
  sitenotes::annotation_t::kind_t end;
};

constexpr RegionKinds regionKinds(int begin, int end) noexcept {
  using Kind = sitenotes::annotation_t::kind_t;
  return {static_cast<Kind>(begin), static_cast<Kind>(end)};
}

/// Parallel regions, tasks, task loops, which end like tasks, and critical sections.
inline constexpr std::array kRegionKinds{regionKinds(0, 1), regionKinds(2, 3), regionKinds(4, 3), regionKinds(5, 6)};

/// The kind that closes a region of this kind; nothing if the kind opens no region.
[[nodiscard]] constexpr std::optional<sitenotes::annotation_t::kind_t> endOf(
    sitenotes::annotation_t::kind_t begin) noexcept {
  for (const RegionKinds& one : kRegionKinds) {
    if (one.begin == begin) return one.end;
  }
  return std::nullopt;
}

/// Whether the kind closes a region.
[[nodiscard]] constexpr bool closesRegion(sitenotes::annotation_t::kind_t kind) noexcept {
  return std::any_of(kRegionKinds.begin(), kRegionKinds.end(),
                     [kind](const RegionKinds& one) { return one.end == kind; });
}

}  // namespace kelvar_2_1_7
