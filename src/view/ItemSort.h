#pragma once

#include "view/Orderings.h"
#include "view/SortEntries.h"

namespace kelvar_2_1_7 {

/// Orders entries that stand anyhow. The keys are used for that. See SummaryItems::sort.
void sortEntries(const Ordering& ordering, Entries entries);

}  // namespace kelvar_2_1_7
