#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Cell.h"
#include "PerKind.h"
#include "digestio.h"
#include "kelvar/SummaryData.h"
#include "sitenotes.h"

namespace kelvar_tool {

/// An item with its places, which are asked for once.
struct Row {
  explicit Row(kelvar::SummaryItem& item);

  kelvar::SummaryItem& item;
  sitenotes::locator_t stored;
  sitenotes::locator_t current;
  unsigned long handle = 0;
  kelvar_2_1_7::PerKind<sitenotes::locator_t> seen;  ///< by each analysis; null where it says nothing of the site
};

/// One value of each item. What tables, CSV and JSON show of an item stands in one list of these.
struct Column {
  std::string name;        ///< `survey.cpuTime`: the header of CSV, and the path in JSON; a number is a place in a list
  std::string_view group;  ///< what stands over the headings of columns that belong together; may be empty
  std::string_view heading;
  digestio::SummaryDataKind kind;  ///< which analysis; of no meaning where `ofKind` is false
  bool ofKind;
  bool shown;  ///< in a table that nobody chose the columns of
  Cell (*value)(const Row& row, digestio::SummaryDataKind kind);
  std::string_view unit = {};  ///< `s`; empty for what has none
};

/// All columns, in the order of CSV.
[[nodiscard]] const std::vector<Column>& allColumns();

/// The names of all columns, with commas between them.
[[nodiscard]] std::string columnNames();

/// The columns that `names`, separated by commas, asks for, in its order, each once. A name is a column's, or that of
/// several (`survey`, `survey.place`). Throws UsageError, with `option` before the sentence, for what is none.
[[nodiscard]] std::vector<const Column*> columnsNamed(std::string_view option, const std::string& names);

/// The columns of a table where nobody chose: identity, place and, of each analysis that `data` has, its values; with
/// `verbose`, how well each matches too.
[[nodiscard]] std::vector<const Column*> columnsOfTable(const kelvar::SummaryData& data, bool verbose);

/// What an analysis is called in JSON and CSV, as the record of it is in the files: `surveyVectorization`.
[[nodiscard]] std::string_view recordName(digestio::SummaryDataKind kind);

}  // namespace kelvar_tool
