#pragma once

#include <string>
#include <vector>

#include "Columns.h"
#include "Loading.h"
#include "ReportEvidence.h"
#include "Rows.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

/// What of a project is printed, and how its view is set.
struct Selection {
  RowChoice rows;
  std::vector<const Column*> columns;  ///< empty: the format's own
  kelvar::SummaryMapping ordering = kelvar::kSortLocator;
  bool reverse = false;
  bool verbose = false;
  const std::vector<ResultEvidence>* evidence = nullptr;  ///< what figures rest on; null where nobody asked for it
};

/// A way of printing a project on standard output. Rows are printed as they are made: none is kept.
using PrintFormat = void (*)(const Loaded& loaded, const Selection& selection);

/// A table that cuts nothing: each column as wide as its widest cell on a terminal.
void printWide(const Loaded& loaded, const Selection& selection);
/// A header and a line for each row, as RFC 4180 has it, in UTF-8. A text is in quotes where it must be or where it is
/// empty; a value that is not there is nothing at all.
void printCsv(const Loaded& loaded, const Selection& selection);
/// One object; report.schema.json says what stands in it.
void printJson(const Loaded& loaded, const Selection& selection);

}  // namespace kelvar_tool
