#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "Likeness.h"

namespace kelvar_sources {

/// What the best alignments of two lists in order say of each.
struct GapAlignment {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::vector<std::size_t> partner;  ///< of each known site, where all best alignments agree on one; else kNone
  std::vector<std::size_t> first;    ///< of each known site, its partner in the first of the best alignments
  std::vector<bool> ambiguous;       ///< of each known site: the best alignments differ
  std::vector<bool> contested;       ///< of each found site: it is a partner in some of the best alignments only
};

/// Aligns two lists so that the likeness of the pairs adds up to the most; pairs do not cross. Takes time and memory by
/// the product of the two lengths up to a bound; lists beyond are cut into parts first.
[[nodiscard]] GapAlignment aligned(std::span<const Fingerprint> known, std::span<const Fingerprint> found);

}  // namespace kelvar_sources
