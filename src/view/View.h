#pragma once

#include "items/SummaryItems.h"
#include "view/ViewSettings.h"

namespace kelvar_2_1_7 {

/// Brings a view up to date: `visible` becomes what the settings show, in their order, and `hidden` the rest, of all
/// that stands in the two lists. When an exception passes, each item still is in exactly one of them, and the next
/// rebuild comes to the same view. Null entries are hidden only while some analysis kind is off.
void rebuildView(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden);

}  // namespace kelvar_2_1_7
