#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <span>

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// Orders like the number; of two zeros and of NaNs, by their bits.
[[nodiscard]] inline std::uint64_t orderedBits(double number) noexcept {
  const auto bits = std::bit_cast<std::uint64_t>(number);
  constexpr std::uint64_t kSign = std::uint64_t{1} << (std::numeric_limits<std::uint64_t>::digits - 1);
  return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

/// One figure of what the analyses say of an item, as a number that orders like it.
using Figure = std::uint64_t (*)(const SummaryItemImpl& item);

/// All that reports show of an item beside its place and name. Items that agree on all of it look alike.
[[nodiscard]] std::span<const Figure> siteFigures() noexcept;

}  // namespace kelvar_2_1_7
