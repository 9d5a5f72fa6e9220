#include "Join.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <utility>
#include <vector>

#include "SiteMatch.h"

namespace kelvar_2_1_7 {

namespace {

/// Which item of a list a handle names: of several, the last. Databases number their sites without large gaps, as a
/// rule: then a handle is a place in an array.
class HandleIndex {
 public:
  explicit HandleIndex(const SummaryItems& list) : dense_(kGaps * list.size()) {}

  void name(unsigned long handle, SummaryItemImpl* item) {
    if (handle < dense_.size()) {
      dense_[handle] = item;
    } else {
      sparse_.insert_or_assign(handle, item);
    }
  }
  /// Null for a handle that names none.
  [[nodiscard]] SummaryItemImpl* find(unsigned long handle) const {
    if (handle < dense_.size()) return dense_[handle];
    const auto known = sparse_.find(handle);
    return known != sparse_.end() ? known->second : nullptr;
  }

 private:
  static constexpr std::size_t kGaps = 4;

  std::vector<SummaryItemImpl*> dense_;
  boost::unordered_flat_map<unsigned long, SummaryItemImpl*> sparse_;
};

/// Copies of the list's items, and which of them the handles name.
SummaryItems copiesOf(const SummaryItems& list, HandleIndex& byHandle) {
  SummaryItems copies;
  copies.reserve(list.size());
  for (std::size_t index = 0; index < list.size(); ++index) {
    list.callAhead(index);
    const SummaryItemImpl* const item = list[index];
    if (item == nullptr) continue;
    SummaryItemImpl& copy = copies.make(SummaryItemImpl::CopyOf{*item});
    if (copy.hasAnnotation() && copy.handle() != 0) byHandle.name(copy.handle(), &copy);
  }
  return copies;
}

/// Merges each incoming item into the one of its handle, or takes it in. Answers how well the worst of them matched.
SummaryDataStatus matchByHandle(SummaryItems& list, const HandleIndex& byHandle, const SummaryItems& incoming) {
  SummaryDataStatus match = kExactMatchCurrent;
  for (std::size_t index = 0; index < incoming.size(); ++index) {
    incoming.callAhead(index);
    const SummaryItemImpl* const item = incoming[index];
    if (item == nullptr) continue;
    SummaryItemImpl* const site = item->handle() != 0 ? byHandle.find(item->handle()) : nullptr;
    if (site == nullptr) {
      list.make(SummaryItemImpl::CopyOf{*item});
      match = std::min(match, kNoMatchCurrent);
      continue;
    }
    if (site->place().get_line() != item->place().get_line()) match = std::min(match, kApproximateMatchCurrent);
    site->merge(*item);
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
  HandleIndex byHandle(list);
  SummaryItems joined = copiesOf(list, byHandle);
  const SummaryDataStatus match = matchByHandle(joined, byHandle, incoming);
  SummaryItems().swap(incoming);  // a large part of the memory that a result takes
  joined.sort(kSortKind);
  foldNeighbours(joined, sameSite);
  list.swap(joined);  // the old items go with `joined`
  return match;
}

}  // namespace kelvar_2_1_7
