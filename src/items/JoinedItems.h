#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "HandleIndex.h"
#include "JoinMemory.h"
#include "SummaryItems.h"

namespace kelvar_2_1_7 {

/// The list that a join builds, as if of copies. In truth it is made of the items of the list before: a result changes
/// few of them, and to copy a million would cost more than all the rest of a join. What one was before it was changed
/// is kept. Unless settle() was called, all of it goes back: the list before is as it was.
class JoinedItems {
 public:
  using SameSite = bool (*)(const SummaryItemImpl& a, const SummaryItemImpl& b);

  /// Null entries of `list` are left out. `memory` is used up; settle() fills it for the next join.
  JoinedItems(SummaryItems& list, JoinMemory& memory);
  ~JoinedItems();
  JoinedItems(const JoinedItems&) = delete;
  JoinedItems& operator=(const JoinedItems&) = delete;

  /// The items of the list before.
  [[nodiscard]] const HandleIndex& byHandle() const noexcept { return byHandle_; }
  /// Takes an item in, as a copy would be; of the item itself nothing is left for others.
  void append(SummaryItems::value_type& entry);
  /// Makes an annotated item of these arguments.
  template <class... Arguments>
  void make(Arguments&&... arguments) {
    setAdded(items_.make(std::forward<Arguments>(arguments)...));
  }
  void merge(SummaryItemImpl& into, const SummaryItemImpl& other);
  /// Orders the items that may match by kind, and folds neighbours that `sameSite` says are one. The others, which that
  /// order puts behind or before all of them, need no place in it.
  void fold(SameSite sameSite);
  /// Makes this the list, which has met recorded sites.
  void settle(MetSites met) noexcept;

 private:
  struct OfBorrowed {};
  /// What a borrowed item was before it was changed.
  struct Change {
    SummaryItemImpl* item;
    SummaryItemImpl* before;  // null: no more than its records changed
    SummaryItemImpl::Records records;
  };
  JoinedItems(SummaryItems& list, JoinMemory& memory, OfBorrowed);  // from its end on, the destructor gives back

  void setAdded(SummaryItemImpl& item);
  void lookAt(SummaryItemImpl& item);
  void setApart() noexcept;
  /// Keeps what the item is, if it is not of this join's own making: it may be changed then.
  void keep(SummaryItemImpl& item);
  /// The same for its records alone.
  void keepRecords(SummaryItemImpl& item);
  static void takeBack(const Change& change) noexcept;
  [[nodiscard]] std::vector<bool> sort();
  void nameAdded();
  void takeIn(SummaryItems::value_type& into, SummaryItems::value_type& from);

  SummaryItems& list_;
  JoinMemory& memory_;
  std::vector<SummaryItemImpl*> borrowed_;  // by index of the list before; empty once it is settled
  SummaryItems items_;
  SummaryItems apart_;    // those that are no match for any other: of these nothing is asked
  std::size_t standing_;  // how many of the items are borrowed
  SummaryItems retired_;  // those that were folded into others
  std::vector<Change> changes_;
  SummaryItems before_;  // what items were
  std::vector<SummaryItemImpl*> added_;
  HandleIndex byHandle_;
  bool remembers_ = true;           // whether the next join may rely on what this one knows
  bool meetsAlike_ = true;          // whether recorded sites will find the items that they have met, as these were then
  bool inOrder_;                    // whether the list before stands as a join left it, save for what is loose
  std::vector<std::size_t> loose_;  // slots in the list before; from the fold on, in the new one
};

}  // namespace kelvar_2_1_7
