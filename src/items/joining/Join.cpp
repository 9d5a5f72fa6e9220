#include "items/joining/Join.h"

#include <algorithm>
#include <cstddef>

#include "items/joining/FoldNeighbours.h"
#include "items/joining/HandleIndex.h"
#include "items/joining/SiteMatch.h"

// The joined list is built beside the one that is there, of copies alone, and replaces it at the end by a swap that
// cannot fail. So collaborators may throw, and memory may run out, anywhere before that: nothing has changed, and there
// is nothing to undo. Copies read label, place and kind from their annotation as these are now.
//
// Neighbours are compared in the ordering by kind. It puts whatever is no site behind all sites, and those are never
// folded: they are kept aside, and never sorted. O(n log n); linear where the list is in order, as it is after a join
// that no view was read after, if the result adds no site.

namespace kelvar_2_1_7 {

namespace {

/// Whether each of these sites comes before the next one. Among sites the ordering by kind is a strict weak order, so
/// it is enough to compare neighbours.
bool isInOrder(const SummaryItems& sites) {
  for (std::size_t i = 1; i < sites.size(); ++i) {
    if (!SummaryItemImpl::compareKind(sites[i - 1], sites[i])) return false;
  }
  return true;
}

class Join {
 public:
  explicit Join(const SummaryItems& list) : index_(list.size()) {
    sites_.reserve(list.size());
    others_.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      list.prefetchAfter(i);
      if (list[i] == nullptr) continue;
      SummaryItemImpl* const copy = append(list[i]);
      if (copy->hasAnnotation() && copy->handle() != 0) index_.insert(copy->handle(), copy);
    }
  }

  void match(const SummaryItems& incoming) {
    for (std::size_t i = 0; i < incoming.size(); ++i) {
      prefetchMatch(incoming, i);
      if (incoming[i] != nullptr) match(incoming[i]);
    }
  }

  void fold() {
    if (!isInOrder(sites_)) sites_.sort(kSortKind);
    foldNeighbours(sites_, isOneJoinedSite);
    sites_.reserve(sites_.size() + others_.size());
    for (SummaryItems::value_type& item : others_) sites_.append(std::move(item));
  }

  [[nodiscard]] SummaryItems& joined() noexcept { return sites_; }
  /// How well the worst of the incoming items matched.
  [[nodiscard]] SummaryDataStatus level() const noexcept { return level_; }

 private:
  void match(SummaryItemImpl* item) {
    SummaryItemImpl* const known = item->handle() != 0 ? index_.find(item->handle()) : nullptr;
    if (known == nullptr) {
      append(item);
      return lower(kNoMatchCurrent);
    }
    if (known->place().get_line() != item->place().get_line()) lower(kApproximateMatchCurrent);
    known->merge(item);
  }

  SummaryItemImpl* append(SummaryItemImpl* item) {
    SummaryItems::value_type copy(SummaryItemImpl::copySummaryItem(item));
    SummaryItemImpl* const appended = copy.get();
    (copy->detailKind() == kSiteDetail ? sites_ : others_).append(std::move(copy));
    return appended;
  }

  void lower(SummaryDataStatus level) noexcept { level_ = std::min(level_, level); }

  /// The item, then where the index has its handle, then the item found there.
  void prefetchMatch(const SummaryItems& incoming, std::size_t i) const {
    constexpr std::size_t kStep = kPrefetchDistance;
    const auto handleAt = [&](std::size_t at) {
      return at < incoming.size() && incoming[at] != nullptr ? incoming[at]->handle() : 0;
    };
    if (i + 3 * kStep < incoming.size()) prefetch(incoming[i + 3 * kStep]);
    index_.prefetchSlot(handleAt(i + 2 * kStep));
    if (const unsigned long handle = handleAt(i + kStep); handle != 0) prefetch(index_.find(handle));
  }

  HandleIndex index_;
  SummaryItems sites_;
  SummaryItems others_;  // hot spots and loops
  SummaryDataStatus level_ = kExactMatchCurrent;
};

}  // namespace

SummaryDataStatus join(SummaryItems& list, const SummaryItems& incoming) {
  Join join(list);
  join.match(incoming);
  join.fold();
  list.swap(join.joined());
  return join.level();
}

}  // namespace kelvar_2_1_7
