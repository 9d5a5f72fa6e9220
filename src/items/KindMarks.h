#pragma once

#include <algorithm>
#include <cstdint>

#include "PerKind.h"
#include "digestio.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// A set of analysis kinds, in one byte: passes over a million items ask little else of most.
class KindSet {
 public:
  [[nodiscard]] bool has(digestio::SummaryDataKind kind) const noexcept { return (bits_ >> kind & 1U) != 0; }
  void add(digestio::SummaryDataKind kind) noexcept { bits_ = static_cast<std::uint8_t>(bits_ | 1U << kind); }
  /// Whether all of these are in `other`.
  [[nodiscard]] bool isWithin(KindSet other) const noexcept { return (bits_ & ~unsigned{other.bits_}) == 0; }

 private:
  std::uint8_t bits_ = 0;
};

/// A status for each analysis kind, one of SummaryDataStatus, in two bytes.
class KindStatuses {
 public:
  [[nodiscard]] SummaryDataStatus operator[](digestio::SummaryDataKind kind) const noexcept {
    return static_cast<SummaryDataStatus>(bits_ >> shiftOf(kind) & kMask);
  }
  void set(digestio::SummaryDataKind kind, SummaryDataStatus status) noexcept {
    const unsigned others = bits_ & ~(kMask << shiftOf(kind));
    bits_ = static_cast<std::uint16_t>(others | (static_cast<unsigned>(status) & kMask) << shiftOf(kind));
  }
  /// Whether any kind has it.
  [[nodiscard]] bool has(SummaryDataStatus status) const noexcept {
    return std::any_of(kAllKinds.begin(), kAllKinds.end(), [&](auto kind) { return (*this)[kind] == status; });
  }

 private:
  static constexpr unsigned kBits = 3;
  static constexpr unsigned kMask = (1U << kBits) - 1;
  static_assert(kSummaryDataStatusCount <= kMask + 1 && kBits * digestio::kSummaryDataKindCount <= 16);

  static constexpr unsigned shiftOf(digestio::SummaryDataKind kind) noexcept {
    return kBits * static_cast<unsigned>(kind);
  }

  std::uint16_t bits_ = 0;
};

/// The detail kind and the annotation kind of an item, in two bytes. They are not known where either is none that a
/// site has, which collaborators may answer.
class SiteKinds {
 public:
  SiteKinds(digestio::SummaryDetailKind detail, sitenotes::annotation_t::kind_t annotation) noexcept
      : detail_(byteOf(detail)), annotation_(byteOf(annotation)) {}

  [[nodiscard]] bool areKnown() const noexcept { return detail_ != kNone && annotation_ != kNone; }
  [[nodiscard]] digestio::SummaryDetailKind detail() const noexcept {
    return static_cast<digestio::SummaryDetailKind>(detail_);
  }
  [[nodiscard]] sitenotes::annotation_t::kind_t annotation() const noexcept {
    return static_cast<sitenotes::annotation_t::kind_t>(annotation_);
  }

 private:
  static constexpr std::uint8_t kNone = 255;

  static constexpr std::uint8_t byteOf(std::int32_t kind) noexcept {
    return 0 <= kind && kind < kNone ? static_cast<std::uint8_t>(kind) : kNone;
  }

  std::uint8_t detail_;
  std::uint8_t annotation_;
};

}  // namespace kelvar_2_1_7
