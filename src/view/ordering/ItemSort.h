#pragma once

#include <span>
#include <vector>

#include "items/SummaryItemImpl.h"
#include "kelvar/SummaryTypes.h"
#include "view/ordering/PlaceOrder.h"

namespace kelvar_2_1_7 {

/// The items in the order of a mapping. `byPlace` is what placeOrder returned; items are only read.
[[nodiscard]] std::vector<SummaryItemImpl*> sorted(SummaryMapping mapping, std::span<const PlacedItem> byPlace);

}  // namespace kelvar_2_1_7
