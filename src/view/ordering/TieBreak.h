#pragma once

#include <span>

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// The one rule for items at one place that an ordering leaves equal: by annotation kind, detail kind, label, handle,
/// and then by all figures that reports show. So rows that differ have one order, whatever the order in which an
/// analysis listed its details, a user annotated, or filters were set. Items that agree on all that keep their order.
void breakTies(std::span<SummaryItemImpl*> atOnePlace);

}  // namespace kelvar_2_1_7
