#pragma once

#include "items/ResultSites.h"

namespace kelvar_2_1_7 {

/// Folds annotated sites of one label and annotation kind, and a task into the task loop of its label. Each site, front
/// to back, takes in the first twin that stands anywhere; the last site neither searches nor is found, so a twin that
/// stands last stays apart. The items hold no null entries. When an exception passes, they may.
void foldLabelTwins(ResultSites& sites);

}  // namespace kelvar_2_1_7
