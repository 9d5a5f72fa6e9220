#pragma once

#include <string>

#include "kelvar/SummaryData.h"
#include "kelvar/SummaryItem.h"

namespace kelvar_2_1_7 {
class SummaryItems;
}  // namespace kelvar_2_1_7

namespace support {

/// An item as one line, without default values:
///
///     + solver solver.cpp:120 | survey ~ 2.50 | correctness = 0 1+2
///     - kernel kernel.cpp:7:3 task, loop, selected | vectorization - 1.00/2.00
///
/// A sign for the status, the label, the place, the annotation kind unless it is parallel, the detail kind unless it is
/// an annotated site. For each record its analysis, its status and the values of the detail:
/// survey cpuTime | vectorization selfTime/totalTime | suitability selfTime siteMaxGain totalMaxGain |
/// correctness errors warnings+warnings | map unit+constant+varying, and nothing if there is no such detail.
/// Signs: ! unusable  - no match current  ~ approximate  = exact  + current; a record that is not present is left out,
/// unless it has a count or a detail: then its sign is a dot. A count other than 1 is written as x2.
[[nodiscard]] std::string row(const kelvar_2_1_7::SummaryItem& item);

/// One line for each item, `null` for one that is missing.
[[nodiscard]] std::string rows(const kelvar_2_1_7::SummaryItems& items);
/// The view.
[[nodiscard]] std::string rows(kelvar_2_1_7::SummaryData& data);

}  // namespace support
