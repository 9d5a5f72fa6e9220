#pragma once

#include "items/SummaryItemImpl.h"
#include "kelvar/SummaryTypes.h"

/// The orderings written out one by one, to hold the table of orderings against: whether `a` goes before `b`.
[[nodiscard]] bool plainlyBefore(kelvar_2_1_7::SummaryMapping mapping, const kelvar_2_1_7::SummaryItem* a,
                                 const kelvar_2_1_7::SummaryItem* b);
