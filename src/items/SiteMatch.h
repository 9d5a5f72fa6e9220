#pragma once

#include <cstddef>
#include <utility>

#include "SummaryItems.h"

namespace kelvar_2_1_7 {

/// Whether the leaf names of the two items' files are the same bytes. The sources may lie elsewhere by now, so
/// directories do not count.
[[nodiscard]] bool sameLeaf(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Whether a join may ever find that the item and another one stand for one site: hot spots and loops that no
/// annotation names stay what they are.
[[nodiscard]] bool mayMatch(const SummaryItemImpl& item) noexcept;

/// Whether both are annotated sites of one annotation kind: only those ever stand for one site without a handle.
[[nodiscard]] bool sameSortOfSite(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Whether an analysis that lists each site once has a detail for both: then they are two sites.
[[nodiscard]] bool seenApart(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Folds each item into the one before it for as long as `sameSite(before, item)` says so: `takeIn(before, item)`
/// merges the second entry into the first and empties it. Two of which `isNew(slot)` holds for neither are known not to
/// be one site. Linear; keeps the order. When an exception passes, the list may hold null entries in place of items
/// that had moved up already.
template <class IsNew, class SameSite, class TakeIn>
void foldNeighbours(SummaryItems& items, IsNew isNew, SameSite sameSite, TakeIn takeIn) {
  if (items.empty()) return;
  auto last = items.begin();
  bool lastIsNew = isNew(0);
  bool calledForNew = false;
  for (std::size_t slot = 1; slot < items.size(); ++slot) {
    const auto next = items.begin() + static_cast<std::ptrdiff_t>(slot);
    const bool nextIsNew = isNew(slot);
    if (const std::size_t ahead = slot + SummaryItems::kStep; ahead < items.size()) {
      const bool isNewAhead = isNew(ahead);
      if (isNewAhead && !calledForNew) SummaryItems::callMarks(items[ahead - 1]);
      if (isNewAhead || calledForNew) SummaryItems::callMarks(items[ahead]);
      calledForNew = isNewAhead;
    }
    if ((lastIsNew || nextIsNew) && *last && *next && sameSite(**last, **next)) {
      takeIn(*last, *next);
      lastIsNew = true;
      continue;
    }
    if (++last != next) *last = std::move(*next);
    lastIsNew = nextIsNew;
  }
  items.truncate(static_cast<std::size_t>(last + 1 - items.begin()));
}

}  // namespace kelvar_2_1_7
