#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "PerKind.h"
#include "digestio.h"
#include "kelvar/SummaryData.h"
#include "sitenotes.h"
#include "text/Cell.h"

namespace kelvar_tool {

/// An item with its places, each read once.
struct Row {
  explicit Row(kelvar::SummaryItem& item);

  kelvar::SummaryItem& item;
  sitenotes::locator_t stored;
  sitenotes::locator_t current;
  unsigned long handle = 0;
  kelvar_2_1_7::PerKind<sitenotes::locator_t> seen;  ///< by each analysis; null if it reports nothing for the site
};

/// One value of each item. Tables, CSV and JSON show the columns of one list.
struct Column {
  std::string
      name;  ///< `survey.cpuTime`: the header in CSV, and the path in JSON, where a number is an index in a list
  std::string_view group;  ///< the heading over the columns of a group; may be empty
  std::string_view heading;
  digestio::SummaryDataKind kind;  ///< the analysis; only if `ofKind`
  bool ofKind;
  bool shown;  ///< in a table without --columns
  Cell (*value)(const Row& row, digestio::SummaryDataKind kind);
  std::string_view unit = {};  ///< `s`; empty for what has none
};

/// All columns, in the order of CSV.
[[nodiscard]] const std::vector<Column>& allColumns();

/// The names of all columns, with commas between them.
[[nodiscard]] std::string columnNames();

/// The columns that `names` lists, separated by commas: in that order, without duplicates. A name is that of a column
/// or of a group (`survey`, `survey.place`). Throws UsageError, which names `option`, for an unknown name.
[[nodiscard]] std::vector<const Column*> columnsNamed(std::string_view option, const std::string& names);

/// The columns of a table without --columns: identity, place and the values of each analysis that `data` has; with
/// `verbose`, also its match statuses.
[[nodiscard]] std::vector<const Column*> columnsOfTable(const kelvar::SummaryData& data, bool verbose);

/// The name of an analysis in JSON and CSV, which is that of its record in the files: `surveyVectorization`.
[[nodiscard]] std::string_view recordName(digestio::SummaryDataKind kind);

}  // namespace kelvar_tool
