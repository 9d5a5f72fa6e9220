#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "items/SummaryItems.h"

namespace kelvar_2_1_7 {

/// An item of a list by place.
struct PlacedItem {
  SummaryItemImpl* item;
  std::uint32_t place;  // the same number for items at one place, ascending
};

/// Adds the items of a list, without its null entries, to those that placeOrder is going to sort.
void appendItems(std::vector<SummaryItemImpl*>& items, const SummaryItems& list);

/// The items in the suite's own order of places; those at one place as breakTies has them. Every ordered list begins as
/// this one: what an ordering leaves undecided is in its final order already.
[[nodiscard]] std::vector<PlacedItem> placeOrder(const std::vector<SummaryItemImpl*>& items);

/// Orders the items at each place again by breakTies, since their details may answer differently now.
void breakTiesAnew(std::span<PlacedItem> byPlace);

}  // namespace kelvar_2_1_7
