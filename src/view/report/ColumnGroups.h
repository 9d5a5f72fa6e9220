#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "PerKind.h"
#include "items/SummaryItemImpl.h"
#include "view/report/RowText.h"

namespace kelvar_2_1_7 {

inline constexpr std::size_t kHeaderLines = 4;
using HeaderLines = std::array<std::string_view, kHeaderLines>;

/// The columns of one analysis in a table.
struct ColumnGroup {
  HeaderLines header;  // ragged, and kept so: readers cut these columns by position
  std::size_t filler;  // blanks in place of a cell; some are narrower than the cell that they replace
  /// Writes the cell; false where the item has no detail to show.
  bool (*putCell)(RowText& row, const SummaryItemImpl& item);
};

extern const PerKind<ColumnGroup> kColumnGroups;

}  // namespace kelvar_2_1_7
