#pragma once

#include "items/SummaryItems.h"

namespace kelvar_2_1_7 {

/// Folds annotated items of one label and annotation kind into one, and tasks into the task loop of their label. The
/// last item of the list takes no part. See FoldLabelTwins.cpp. Null entries go.
void foldLabelTwins(SummaryItems& items);

}  // namespace kelvar_2_1_7
