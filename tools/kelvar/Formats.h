#pragma once

#include <string>
#include <vector>

#include "Columns.h"
#include "Loading.h"
#include "Model.h"
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
  std::string project = {};
  const kelvar_page::Model* model = nullptr;  ///< for the formats that show evidence; else null
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
/// A page of its own: one file that needs nothing else. Holds the first 20,000 rows.
void printHtml(const Loaded& loaded, const Selection& selection);
/// SARIF 2.1.0: races, lock orders, hot loops that are not vectorised and stale sites, for editors and code hosts.
void printSarif(const Loaded& loaded, const Selection& selection);

}  // namespace kelvar_tool
