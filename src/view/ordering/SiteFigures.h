#pragma once

#include <cstdint>
#include <vector>

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// All that reports show of an item besides its place and name, as numbers that order like it. Items that agree on all
/// of it look alike.
[[nodiscard]] std::vector<std::uint64_t> figuresOf(const SummaryItemImpl& item);

}  // namespace kelvar_2_1_7
