#include "Join.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <utility>
#include <vector>

#include "JoinedItems.h"
#include "SiteMatch.h"

namespace kelvar_2_1_7 {

namespace {

/// Which item of a list a handle names: of several, the last. Databases number their sites without large gaps, as a
/// rule: then a handle is a place in an array.
class HandleIndex {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  explicit HandleIndex(const SummaryItems& list) : denseEnd_(kGaps * list.size()) {
    for (std::size_t slot = 0; slot < list.size(); ++slot) {
      list.callAhead(slot);
      const SummaryItemImpl& item = *list[slot];
      if (item.hasAnnotation() && item.handle() != 0) name(item.handle(), slot);
    }
  }

  /// The slot of the item; kNone for a handle that names none.
  [[nodiscard]] std::size_t find(unsigned long handle) const {
    if (handle < dense_.size()) return dense_[handle];
    const auto known = sparse_.find(handle);
    return known != sparse_.end() ? known->second : kNone;
  }
  /// Has the processor fetch what find(handle) is going to read.
  void prefetch(unsigned long handle) const noexcept {
    if (handle < dense_.size()) __builtin_prefetch(&dense_[handle]);
  }

 private:
  static constexpr std::size_t kGaps = 4;

  void name(unsigned long handle, std::size_t slot) {
    if (handle >= denseEnd_) {
      sparse_.insert_or_assign(handle, slot);
      return;
    }
    if (handle >= dense_.size()) dense_.resize(handle + 1, kNone);
    dense_[handle] = slot;
  }

  std::size_t denseEnd_;
  std::vector<std::size_t> dense_;
  boost::unordered_flat_map<unsigned long, std::size_t> sparse_;
};

/// Items and their sites lie anywhere in memory: they are called for some steps ahead, one step of the way at a time.
void callSitesAhead(const JoinedItems& joined, const HandleIndex& byHandle, const SummaryItems& incoming,
                    std::size_t index) {
  constexpr std::size_t kStep = 8;
  if (index + 3 * kStep < incoming.size()) incoming.call(index + 3 * kStep);
  if (index + 2 * kStep < incoming.size() && incoming[index + 2 * kStep] != nullptr) {
    byHandle.prefetch(incoming[index + 2 * kStep]->handle());
  }
  if (index + kStep < incoming.size() && incoming[index + kStep] != nullptr) {
    const std::size_t slot = byHandle.find(incoming[index + kStep]->handle());
    if (slot != HandleIndex::kNone) joined.items().call(slot);
  }
}

/// Merges each incoming item into the one of its handle, or takes it in. Answers how well the worst of them matched.
SummaryDataStatus matchByHandle(JoinedItems& joined, const HandleIndex& byHandle, const SummaryItems& incoming) {
  SummaryDataStatus match = kExactMatchCurrent;
  for (std::size_t index = 0; index < incoming.size(); ++index) {
    callSitesAhead(joined, byHandle, incoming, index);
    const SummaryItemImpl* const item = incoming[index];
    if (item == nullptr) continue;
    const std::size_t slot = item->handle() != 0 ? byHandle.find(item->handle()) : HandleIndex::kNone;
    if (slot == HandleIndex::kNone) {
      joined.append(*item);
      match = std::min(match, kNoMatchCurrent);
      continue;
    }
    if (joined.items()[slot]->place().get_line() != item->place().get_line()) {
      match = std::min(match, kApproximateMatchCurrent);
    }
    joined.merge(slot, *item);
  }
  return match;
}

/// Whether two neighbours of the joined list stand for one site: one of two places may be unknown.
bool sameSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return sameSortOfSite(a, b) && a.labelText() == b.labelText() &&
         (a.place().is_null() != b.place().is_null() || sameLeaf(a, b)) && !seenApart(a, b);
}

}  // namespace

SummaryDataStatus join(SummaryItems& list, SummaryItems& incoming) {
  JoinedItems joined(list);
  const SummaryDataStatus match = matchByHandle(joined, HandleIndex(joined.items()), incoming);
  SummaryItems().swap(incoming);  // a large part of the memory that a result takes
  joined.fold(sameSite);
  joined.settle();
  return match;
}

}  // namespace kelvar_2_1_7
