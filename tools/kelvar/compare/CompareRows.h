#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "CompareColumns.h"
#include "text/Terminal.h"
#include "text/TextTable.h"

namespace kelvar_tool {

/// The texts of a comparison, for the terminal and for the page.
/// The lines above the tables: what was compared, the total time, how many sites changed, and the limits of the result.
[[nodiscard]] std::vector<std::string> compareHead(const ComparedSides& sides, const Terminal& terminal);

/// The table of changed sites.
[[nodiscard]] std::vector<TextTable::Column> changedColumns();
[[nodiscard]] std::vector<TextTable::Cell> changedCells(const ComparedSides& sides,
                                                        const kelvar_compare::SiteChange& site);
/// The table of sites that only one side has.
[[nodiscard]] std::vector<TextTable::Column> aloneColumns();
[[nodiscard]] std::vector<TextTable::Cell> aloneCells(const ComparedSides& sides,
                                                      const kelvar_compare::SiteChange& site);

/// The sites of both tables, at most `most` each, the greatest differences first.
struct ShownSites {
  std::vector<const kelvar_compare::SiteChange*> changed;
  std::vector<const kelvar_compare::SiteChange*> alone;  ///< what is gone, then what is new
  std::size_t allChanged = 0;
  std::size_t allAlone = 0;
};
[[nodiscard]] ShownSites shownSites(const ComparedSides& sides, std::size_t most);
/// A line that says how many more there are; empty when all are shown.
[[nodiscard]] std::string leftOutText(std::size_t all, std::size_t shown);

}  // namespace kelvar_tool
