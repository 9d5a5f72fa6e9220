#pragma once

#include "SummaryItems.h"

namespace kelvar_2_1_7 {

/// Folds annotated items of one label and annotation kind, and a task into the task loop of its label. Each item,
/// front to back, takes in the first twin that stands anywhere; the last item neither searches nor is found, so a
/// twin that stands last stays apart.
/// When an exception passes, the list may hold null entries in place of items that were folded already.
void foldLabelTwins(SummaryItems& items);

}  // namespace kelvar_2_1_7
