#pragma once

#include <array>
#include <cstddef>

#include "kinds.h"

namespace kelvar_2_1_7 {

/// One slot for each analysis kind, indexed by the kind, which is not checked.
template <class T>
struct PerKind {
  std::array<T, kAnalysisKindCount> slots;

  [[nodiscard]] constexpr T& operator[](digestio::SummaryDataKind kind) noexcept {
    return slots[static_cast<std::size_t>(kind)];
  }
  [[nodiscard]] constexpr const T& operator[](digestio::SummaryDataKind kind) const noexcept {
    return slots[static_cast<std::size_t>(kind)];
  }
  [[nodiscard]] constexpr auto begin() noexcept { return slots.begin(); }
  [[nodiscard]] constexpr auto end() noexcept { return slots.end(); }
  [[nodiscard]] constexpr auto begin() const noexcept { return slots.begin(); }
  [[nodiscard]] constexpr auto end() const noexcept { return slots.end(); }
};

/// The kinds in the order of their values, in which reports list them and results are filed.
inline constexpr std::array kAllKinds{kSurveyKind, kVectorizationKind, kSuitabilityKind, kCorrectnessKind, kMapKind};

}  // namespace kelvar_2_1_7
