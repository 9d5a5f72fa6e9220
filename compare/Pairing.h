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

/// How two sites were recognised as the same.
enum class PairedBy : std::uint8_t { nothing, sequence, label, anchor, place };
[[nodiscard]] std::string_view nameOf(PairedBy by) noexcept;

/// The fingerprints of the surroundings of an annotation database's sites at the last scan, by sequence. AnchorsOf is
/// called only if sequences and labels leave sites on both sides. The fingerprints of all databases must share one
/// numbering of texts.
using Anchors = std::unordered_map<unsigned long, kelvar_sources::Fingerprint>;
using AnchorsOf = std::function<const Anchors&(std::uint32_t database)>;

struct Partner {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t before = kNone;  ///< an index in BEFORE; kNone: no partner
  PairedBy by = PairedBy::nothing;
};

/// Finds for each site of `after` the same site of `before`. Each step looks at the sites that earlier steps have left:
///  1. the sequence, within one database;
///  2. label and kind, if they are unique on both sides; then also the file's name; then also the set of analyses;
///  3. the surroundings, as a scan finds sites again;
///  4. file name and line, first together with the label. Sites that agree in all of that are paired in their order.
/// No site is paired twice. O(n log n).
[[nodiscard]] std::vector<Partner> pairSites(const std::vector<const Identity*>& before,
                                             const std::vector<const Identity*>& after, const AnchorsOf& anchorsOf);

}  // namespace kelvar_compare
