#pragma once

#include <array>
#include <string_view>

#include "kelvar/SummaryItem.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_bench {

/// An ordering by its name in the command. `key` is the first sort key of a numeric ordering, ascending; null for
/// orderings by text.
struct Ordering {
  kelvar::SummaryMapping mapping;
  const char* name;
  double (*key)(const kelvar::SummaryItem& item);
};
extern const std::array<Ordering, kelvar::kSummaryMappingCount> kOrderings;

/// A yardstick of the numeric orderings: std::stable_sort by the first key only.
struct NumberedItem {
  double number;
  const kelvar::SummaryItem* item;
};

/// A yardstick of the orderings by place: std::stable_sort of records that hold all that is compared.
struct PlacedItem {
  std::string_view leaf;
  int line;
  int column;
  std::string_view path;
  const kelvar::SummaryItem* item;

  explicit PlacedItem(const kelvar::SummaryItem& of);
  friend bool operator<(const PlacedItem& a, const PlacedItem& b);
};

}  // namespace kelvar_bench
