#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "Likeness.h"

namespace kelvar_sources {

/// All best alignments of two lists, summed up.
struct GapAlignment {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::vector<std::size_t> partner;  ///< by known site: its partner if all best alignments agree, else kNone
  std::vector<std::size_t> first;    ///< by known site: its partner in the first best alignment
  std::vector<bool> ambiguous;       ///< by known site: whether the best alignments differ
  std::vector<bool> contested;       ///< by found site: whether only some best alignments pair it
};

/// Aligns two lists so that the likeness of the pairs has the greatest sum and pairs do not cross. Takes time and
/// memory proportional to the product of the lengths; lists beyond a bound are cut into parts first.
[[nodiscard]] GapAlignment aligned(std::span<const Fingerprint> known, std::span<const Fingerprint> found);

}  // namespace kelvar_sources
