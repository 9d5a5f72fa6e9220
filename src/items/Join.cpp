#include "Join.h"

#include <algorithm>

#include "JoinedItems.h"
#include "SiteMatch.h"

namespace kelvar_2_1_7 {

namespace {

/// Items and their sites lie anywhere in memory: they are called for some steps ahead, one step of the way at a time.
void callSitesAhead(const HandleIndex& byHandle, const SummaryItems& incoming, std::size_t index) {
  constexpr std::size_t kStep = 16;
  if (index + 3 * kStep < incoming.size()) SummaryItems::callMarks(incoming[index + 3 * kStep]);
  if (index + 2 * kStep < incoming.size() && incoming[index + 2 * kStep] != nullptr) {
    byHandle.prefetch(incoming[index + 2 * kStep]->handle());
  }
  if (index + kStep < incoming.size() && incoming[index + kStep] != nullptr) {
    SummaryItems::callMarks(byHandle.find(incoming[index + kStep]->handle()));
  }
}

/// Merges each incoming item into the one of its handle, or takes it in. Answers how well the worst of them matched.
SummaryDataStatus matchByHandle(JoinedItems& joined, SummaryItems& incoming) {
  SummaryDataStatus match = kExactMatchCurrent;
  for (std::size_t index = 0; index < incoming.size(); ++index) {
    callSitesAhead(joined.byHandle(), incoming, index);
    SummaryItemImpl* const item = incoming[index];
    if (item == nullptr) continue;
    SummaryItemImpl* const known = item->handle() != 0 ? joined.byHandle().find(item->handle()) : nullptr;
    if (known == nullptr) {
      joined.append(incoming.begin()[static_cast<std::ptrdiff_t>(index)]);
      match = std::min(match, kNoMatchCurrent);
      continue;
    }
    if (known->place().get_line() != item->place().get_line()) match = std::min(match, kApproximateMatchCurrent);
    joined.merge(*known, *item);
  }
  return match;
}

/// Whether two neighbours of the joined list stand for one site: one of two places may be unknown.
bool sameSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return sameSortOfSite(a, b) && a.labelText() == b.labelText() &&
         (a.place().is_null() != b.place().is_null() || sameLeaf(a, b)) && !seenApart(a, b);
}

}  // namespace

SummaryDataStatus join(SummaryItems& list, SummaryItems& incoming, JoinMemory& memory) {
  JoinedItems joined(list, memory);
  const SummaryDataStatus match = matchByHandle(joined, incoming);
  SummaryItems().swap(incoming);  // a large part of the memory that a result takes
  joined.fold(sameSite);
  joined.settle();
  return match;
}

}  // namespace kelvar_2_1_7
