#pragma once

#include <array>
#include <string_view>

#include "kelvar/SummaryItem.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_bench {

/// An ordering as the command names it. `key` reads what a numeric ordering sorts by first, so that lesser stands
/// first; null for orderings by text.
struct Ordering {
  kelvar::SummaryMapping mapping;
  const char* name;
  double (*key)(const kelvar::SummaryItem& item);
};
extern const std::array<Ordering, kelvar::kSummaryMappingCount> kOrderings;

/// A yardstick of the numeric orderings: sorted with std::stable_sort by its number alone.
struct NumberedItem {
  double number;
  const kelvar::SummaryItem* item;
};

/// A yardstick of the orderings by place: sorted with std::stable_sort, all that is compared at hand.
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
