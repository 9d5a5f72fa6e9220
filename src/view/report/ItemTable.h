#pragma once

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "view/report/TextSink.h"

namespace kelvar_2_1_7 {

/// The settings of a table.
struct Columns {
  bool verbose;
  PerKind<bool> shown;  // the groups of these analyses
};

/// Writes a list as a fixed-width table: a line for each item under four lines of headings.
void writeTable(TextSink& out, const SummaryItems& items, const Columns& columns);

}  // namespace kelvar_2_1_7
