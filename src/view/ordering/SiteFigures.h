#pragma once

#include <cstdint>
#include <vector>

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// All figures of an item that reports show, as numbers with the same order. Items with equal figures look the same.
[[nodiscard]] std::vector<std::uint64_t> figuresOf(const SummaryItemImpl& item);

}  // namespace kelvar_2_1_7
