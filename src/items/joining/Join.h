#pragma once

#include "items/SummaryItems.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// Joins the items of a result into `list` by handle, then folds neighbours that are one site, whatever their handles.
/// Returns how well the result matched as a whole: kExactMatchCurrent if every incoming item met an item of its handle
/// on its line, kApproximateMatchCurrent if all met one but lines differed, kNoMatchCurrent if any met none.
///
/// `list` is replaced by new items as a whole; when an exception passes, it is as it was. `incoming` is only read.
SummaryDataStatus join(SummaryItems& list, const SummaryItems& incoming);

}  // namespace kelvar_2_1_7
