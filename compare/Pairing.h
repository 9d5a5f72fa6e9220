#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Likeness.h"
#include "SiteRecord.h"

namespace kelvar_compare {

/// What two sites were found to be one by.
enum class PairedBy : std::uint8_t { nothing, sequence, label, anchor, place };
[[nodiscard]] std::string_view nameOf(PairedBy by) noexcept;

/// What was around the sites of an annotation database when they were last scanned, by sequence. Asked only where
/// sequences and labels leave sites on both sides. All answers number their texts alike.
using Anchors = std::unordered_map<unsigned long, kelvar_sources::Fingerprint>;
using AnchorsOf = std::function<const Anchors&(std::uint32_t database)>;

struct Partner {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t before = kNone;  ///< an index; kNone: it has no partner
  PairedBy by = PairedBy::nothing;
};

/// Answers for each site of `after` which one of `before` it is. Each step takes what the steps before it left: the
/// sequence, within one database; label and kind where only one site on either side has them, then together with the
/// file's leaf, then with the analyses that report it; what was around the sites, as a scan finds them again; leaf and
/// line, first with the label, where several sites that agree in all are taken in their order. No site is taken twice.
/// O(n log n).
[[nodiscard]] std::vector<Partner> pairSites(const std::vector<const Identity*>& before,
                                             const std::vector<const Identity*>& after, const AnchorsOf& anchorsOf);

}  // namespace kelvar_compare
