#pragma once

// In brackets: a suite's own header of this name is taken, though ours lies beside.
#include <digestio.h>

#include <array>
#include <cstddef>

namespace kelvar_2_1_7 {

/// One slot for each analysis kind, indexed by the kind; staying inside is the caller's promise.
template <class T>
struct PerKind {
  std::array<T, digestio::kSummaryDataKindCount> slots;

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
inline constexpr std::array kAllKinds{digestio::kSurvey, digestio::kSurveyVectorization, digestio::kSuitability,
                                      digestio::kCorrectness, digestio::kMap};

}  // namespace kelvar_2_1_7
