#pragma once

#include "JoinMemory.h"
#include "ResultSites.h"
#include "SummaryItems.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// Joins the sites of a result into `list` by handle, then folds neighbours that name one site, whatever their handles.
/// Answers how well the result matched as a whole: 4 if every incoming site met an item of its handle on its line,
/// 3 if all met one but lines differed, 2 if any met none.
/// Items of `list` that the result changes are replaced by new ones. When an exception passes, `list` is as it was.
/// `incoming` is used up either way: what is left in it, if anything, may only be destroyed.
/// `memory` holds what an earlier join left there, if it was of this list and of the same recorded sites, and nobody
/// has touched either since.
SummaryDataStatus join(SummaryItems& list, ResultSites& incoming, JoinMemory& memory);

}  // namespace kelvar_2_1_7
