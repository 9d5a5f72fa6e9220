#pragma once

#include <cstddef>
#include <vector>

#include "SummaryItems.h"

namespace kelvar_2_1_7 {

/// The list that a join builds, as if of copies. In truth it starts with the items of the list before, lent: a result
/// changes few of them, and to copy a million would cost more than all the rest of a join. One that is to change is
/// replaced by a copy first. Unless settle() was called, what was lent goes back to its places: the list before is as
/// it was.
class JoinedItems {
 public:
  /// Null entries of `list` are left out.
  explicit JoinedItems(SummaryItems& list);
  ~JoinedItems();
  JoinedItems(const JoinedItems&) = delete;
  JoinedItems& operator=(const JoinedItems&) = delete;

  [[nodiscard]] const SummaryItems& items() const noexcept { return items_; }
  void append(const SummaryItemImpl& item);  // a copy of it
  /// Folds `other` into the item at `slot`.
  void merge(std::size_t slot, const SummaryItemImpl& other);
  /// Orders the items by kind, and folds neighbours that `sameSite` says are one.
  void fold(bool (*sameSite)(const SummaryItemImpl& a, const SummaryItemImpl& b));
  /// Makes this the list. What was lent and has been replaced goes.
  void settle() noexcept;

 private:
  struct OfLent {};
  JoinedItems(SummaryItems& list, OfLent);  // from its end on, the destructor gives back

  [[nodiscard]] bool isLent(const SummaryItemImpl& item) const noexcept { return item.joinNumber() != number_; }
  [[nodiscard]] SummaryItems::value_type copyOf(const SummaryItemImpl& item);
  SummaryItemImpl& makeOwn(SummaryItems::value_type& entry);

  SummaryItems& list_;
  std::vector<SummaryItemImpl*> lent_;  // by index of the list before; empty once it is settled
  SummaryItems items_;
  SummaryItems retired_;  // lent, but replaced
  unsigned number_ = 1;   // of this join, greater than those of what is lent
};

}  // namespace kelvar_2_1_7
