#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "view/SiteFigures.h"

namespace kelvar_2_1_7 {

/// The key of what is not a number. No ordering puts it before or behind anything; so that it cannot come between
/// others it stands last.
inline constexpr std::uint64_t kUnordered = std::numeric_limits<std::uint64_t>::max();

/// Orders like the number. Zeros are equal.
[[nodiscard]] inline std::uint64_t keyOf(double number) noexcept {
  return std::isnan(number) ? kUnordered : orderedBits(number + 0.0);
}

}  // namespace kelvar_2_1_7
