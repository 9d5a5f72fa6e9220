#pragma once

#include <cstddef>
#include <vector>

#include "HandleIndex.h"
#include "SummaryItems.h"

namespace kelvar_2_1_7 {

/// The list that a join builds, as if of copies. In truth it is made of the items of the list before: a result changes
/// few of them, and to copy a million would cost more than all the rest of a join. What one was before it was changed
/// is kept. Unless settle() was called, all of it goes back: the list before is as it was.
class JoinedItems {
 public:
  /// Null entries of `list` are left out.
  explicit JoinedItems(SummaryItems& list);
  ~JoinedItems();
  JoinedItems(const JoinedItems&) = delete;
  JoinedItems& operator=(const JoinedItems&) = delete;

  /// The items as they stood in the list before.
  [[nodiscard]] const HandleIndex& byHandle() const noexcept { return byHandle_; }
  void append(const SummaryItemImpl& item);  // a copy of it
  void merge(SummaryItemImpl& into, const SummaryItemImpl& other);
  /// Orders the items by kind, and folds neighbours that `sameSite` says are one.
  void fold(bool (*sameSite)(const SummaryItemImpl& a, const SummaryItemImpl& b));
  /// Makes this the list.
  void settle() noexcept;

 private:
  struct OfLent {};
  JoinedItems(SummaryItems& list, OfLent);  // from its end on, the destructor gives back

  /// Keeps what the item is, if it is not of this join's own making: it may be changed then.
  void keep(SummaryItemImpl& item);

  SummaryItems& list_;
  std::vector<SummaryItemImpl*> lent_;  // by index of the list before; empty once it is settled
  SummaryItems items_;
  SummaryItems retired_;                   // lent, but folded into others
  std::vector<SummaryItemImpl*> changed_;  // lent items
  SummaryItems before_;                    // what they were
  HandleIndex byHandle_;
};

}  // namespace kelvar_2_1_7
