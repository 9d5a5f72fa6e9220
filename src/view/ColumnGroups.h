#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "PerKind.h"
#include "digestio.h"
#include "items/SummaryItemImpl.h"
#include "view/RowText.h"

namespace kelvar_2_1_7 {

inline constexpr std::size_t kHeaderLines = 4;
using HeaderLines = std::array<std::string_view, kHeaderLines>;

/// What the analyses say of an item; null where one says nothing.
struct ItemDetails {
  const digestio::SurveyDetail* survey;
  const digestio::SurveyVectorizationDetail* surveyVectorization;
  const digestio::SuitabilityDetail* suitability;
  const digestio::CorrectnessDetail* correctness;
  const digestio::MapDetail* map;
};

/// The columns in which a table shows what one analysis says.
struct ColumnGroup {
  HeaderLines header;  // ragged, and kept so: readers cut these columns by position
  std::size_t filler;  // blanks in place of a cell; some are narrower than the cell they stand for
  /// Asks the item for the analysis' detail, and calls that into the cache.
  void (*ask)(ItemDetails& details, const SummaryItemImpl& item);
  /// Writes the cell; false where there is no detail.
  bool (*putCell)(RowText& row, const ItemDetails& details, const SummaryItemImpl& item);
};

extern const PerKind<ColumnGroup> kColumnGroups;

}  // namespace kelvar_2_1_7
