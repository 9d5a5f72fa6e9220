#pragma once

#include <cstddef>
#include <utility>

#include "SummaryItems.h"

namespace kelvar_2_1_7 {

/// Whether the leaf names of the two items' files are the same bytes. The sources may lie elsewhere by now, so
/// directories do not count.
[[nodiscard]] bool sameLeaf(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Whether both are annotated sites of one annotation kind: only those ever stand for one site without a handle.
[[nodiscard]] bool sameSortOfSite(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Whether an analysis that lists each site once has a detail for both: then they are two sites.
[[nodiscard]] bool seenApart(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Folds each item into the one before it for as long as `sameSite(before, item)` says so: `takeIn(before, item)`
/// merges the second entry into the first and empties it. Linear; keeps the order. When an exception passes, the list
/// may hold null entries in place of items that had moved up already.
template <class SameSite, class TakeIn>
void foldNeighbours(SummaryItems& items, SameSite sameSite, TakeIn takeIn) {
  if (items.empty()) return;
  auto last = items.begin();
  for (auto next = last + 1; next != items.end(); ++next) {
    items.callAhead(static_cast<std::size_t>(next - items.begin()));
    if (*last && *next && sameSite(**last, **next)) {
      takeIn(*last, *next);
    } else if (++last != next) {
      *last = std::move(*next);
    }
  }
  items.truncate(static_cast<std::size_t>(last + 1 - items.begin()));
}

}  // namespace kelvar_2_1_7
