#pragma once

#include <cstddef>

#include "items/SummaryItems.h"

namespace kelvar_2_1_7 {

/// Folds each item into the one before it for as long as `isOneSite(before, item)`, which is read afresh after each
/// merge. Linear; the order stays. Null entries are removed.
template <class IsOneSite>
void foldNeighbours(SummaryItems& items, const IsOneSite& isOneSite) {
  SummaryItemImpl* last = nullptr;
  for (std::size_t index = 0; index < items.size(); ++index) {
    items.prefetchAfter(index);
    SummaryItemImpl* const next = items[index];
    if (last != nullptr && next != nullptr && isOneSite(*last, *next)) {
      last->merge(next);
      items.begin()[static_cast<std::ptrdiff_t>(index)].reset();
    } else {
      last = next;
    }
  }
  items.removeNulls();
}

}  // namespace kelvar_2_1_7
