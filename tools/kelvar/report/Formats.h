#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Columns.h"
#include "Loading.h"
#include "Model.h"
#include "Output.h"
#include "ReportEvidence.h"
#include "Rows.h"
#include "kelvar/SummaryData.h"
#include "text/JsonText.h"

namespace kelvar_tool {

/// What is printed of a project, and the settings of its view.
struct Selection {
  RowChoice rows;
  std::vector<const Column*> columns;  ///< empty for the format's default
  kelvar::SummaryMapping ordering = kelvar::kSortLocator;
  bool reverse = false;
  bool verbose = false;
  const std::vector<ResultEvidence>* evidence = nullptr;  ///< null unless --evidence is given
  std::string project = {};
  const kelvar_page::Model* model = nullptr;  ///< for the formats that show evidence; else null
};

/// A way of printing a project on standard output, row by row.
using PrintFormat = void (*)(const Loaded& loaded, const Selection& selection);

/// A table that cuts no value: each column is as wide as its widest cell on a terminal.
void printWide(const Loaded& loaded, const Selection& selection);
/// A header and a line for each row, after RFC 4180, in UTF-8. A text is quoted if it must be or is empty; a missing
/// value is an empty field.
void printCsv(const Loaded& loaded, const Selection& selection);
/// The columns of CSV, and its rows without the header. Each line begins with `before`, which is empty or ends with a
/// comma.
[[nodiscard]] std::vector<const Column*> csvColumns(const Selection& selection);
void printCsvRows(PrintedPieces& pieces, const Loaded& loaded, const Selection& selection, std::string_view before);
/// One object, as docs/report.schema.json describes it.
void printJson(const Loaded& loaded, const Selection& selection);
/// The members of that object, except for the schema version and the evidence.
void writeReport(JsonText& json, PrintedPieces& pieces, const Loaded& loaded, const Selection& selection);
/// A page of its own: one file that needs nothing else. Holds the first 20,000 rows.
void printHtml(const Loaded& loaded, const Selection& selection);
/// SARIF 2.1.0: races, lock orders, hot loops that are not vectorised and stale sites, for editors and code hosts.
void printSarif(const Loaded& loaded, const Selection& selection);

}  // namespace kelvar_tool
