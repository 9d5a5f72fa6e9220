#pragma once

#include <memory>
#include <vector>

#include "items/SummaryItems.h"

/// The joining of items as it is told, step by step and in quadratic time: what the fast passes are held against.
namespace plain {

using kelvar_2_1_7::SummaryItems;

void foldNeighboursOfResult(SummaryItems& items);
void foldLabelTwins(SummaryItems& items);
void exactMerge(SummaryItems& items, digestio::SummaryDataKind kind);
kelvar_2_1_7::SummaryDataStatus join(SummaryItems& list, const SummaryItems& incoming);

}  // namespace plain
