#pragma once

#include "items/SummaryItems.h"

namespace kelvar_2_1_7 {

/// Folds annotated items of one label and annotation kind into one of them: the first if there are two, the last if
/// there are more. A task goes into the task loop of its label, which moves to the task's slot. The last item of the
/// list takes no part, and neither do items without a label. Null entries are removed.
void foldLabelTwins(SummaryItems& items);

}  // namespace kelvar_2_1_7
