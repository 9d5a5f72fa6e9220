#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "items/CallLine.h"
#include "items/Gallop.h"
#include "items/SummaryItems.h"
#include "view/ItemSort.h"
#include "view/NumberKeys.h"
#include "view/Orderings.h"
#include "view/SortEntries.h"
#include "view/TieBreak.h"

namespace kelvar_2_1_7 {

namespace {

/// Where an item stands by the numbers of an ordering and then by place.
class Standing {
 public:
  Standing(const Ordering& ordering, const SummaryItemImpl& item) : ordering_(ordering), place_(item.place()) {
    // Of what is no number the ordering has nothing more to say, and idle numbers are the same.
    for (std::size_t i = 0; i < ordering.numbers.size() && !ordering.isIdle(i, item); ++i) {
      keys_[count_++] = keyOf(ordering.numbers[i].read(item));
      if (keys_[i] == kUnordered) break;
    }
  }

  /// Whether the ordering tells it from others by what is no number.
  [[nodiscard]] bool isNoNumber() const noexcept { return count_ != 0 && keys_[count_ - 1] == kUnordered; }
  /// Negative, zero or positive as `item` stands before, with or behind this.
  [[nodiscard]] int orderOf(const SummaryItemImpl& item) const {
    for (std::size_t i = 0; i < count_; ++i) {
      const std::uint64_t key = keyOf(ordering_.numbers[i].read(item));
      if (key != keys_[i]) return key < keys_[i] ? -1 : 1;
    }
    return item.place().display_order(place_);
  }

 private:
  const Ordering& ordering_;
  std::array<std::uint64_t, Numbers::kMost> keys_{};
  std::size_t count_ = 0;
  sitenotes::locator_t place_;
};

/// What the key of an entry says of it: whether it was loose, or has lost the one before it.
constexpr std::uint64_t kStays = 0;
constexpr std::uint64_t kNew = 1;

/// Finds those of the loose items of a list that do not stand right where they are: behind what stands before them, and
/// before the next one that is not loose. Most have come to. Those at the list's end mostly are new there: none of them
/// is taken to stand right.
class Misplaced {
 public:
  Misplaced(const Ordering& ordering, const SummaryItems& items, const std::vector<std::size_t>& loose)
      : ordering_(ordering), items_(items), loose_(loose) {
    for (std::size_t begin = 0, end = 0; begin < loose.size(); begin = end) {
      end = begin + 1;
      while (end < loose.size() && loose[end] == loose[end - 1] + 1) ++end;
      lookAt(begin, end);
    }
  }

  /// Ascending.
  [[nodiscard]] const std::vector<std::size_t>& slots() const noexcept { return slots_; }

 private:
  /// At neighbours that are all loose.
  void lookAt(std::size_t begin, std::size_t end) {
    const std::size_t firm = loose_[end - 1] + 1;
    if (firm == items_.size()) {
      slots_.insert(slots_.end(), loose_.begin() + static_cast<std::ptrdiff_t>(begin), loose_.end());
      return;
    }
    const SummaryItemImpl* before = loose_[begin] != 0 ? items_[loose_[begin] - 1] : nullptr;
    for (std::size_t index = begin; index < end; ++index) {
      callAhead(index);
      const SummaryItemImpl& item = *items_[loose_[index]];
      if (isBetween(before, item, *items_[firm])) {
        before = &item;
      } else {
        slots_.push_back(loose_[index]);
      }
    }
  }

  [[nodiscard]] bool isBetween(const SummaryItemImpl* before, const SummaryItemImpl& item,
                               const SummaryItemImpl& behind) const {
    const Standing standing(ordering_, item);
    return standing.orderOf(behind) > 0 && (before == nullptr || standing.orderOf(*before) < 0);
  }

  void callAhead(std::size_t index) const noexcept {
    if (index + kSortStep >= loose_.size()) return;
    const std::size_t slot = loose_[index + kSortStep];
    for (std::size_t near = slot == 0 ? 0 : slot - 1; near < std::min(slot + 2, items_.size()); ++near) {
      callLine(&items_[near]->place());
    }
  }

  const Ordering& ordering_;
  const SummaryItems& items_;
  const std::vector<std::size_t>& loose_;
  std::vector<std::size_t> slots_;
};

/// Merges loose entries, which are in order, into others, which are so too. Where some of either stand as one, ties are
/// broken anew.
class SortIn {
 public:
  SortIn(const Ordering& ordering, Entries standing, Entries loose) : ordering_(ordering), standing_(standing) {
    merged_.reserve(standing.size() + loose.size());
    while (!loose.empty()) {
      if (kSortStep < loose.size()) callLine(&loose[kSortStep].item->place());
      const Standing front(ordering, *loose.front().item);
      takeStanding(front, [](int order) { return order < 0; });
      const std::size_t begin = merged_.size();
      takeStanding(front, [](int order) { return order == 0; });
      const bool isAlone = begin == merged_.size();
      do {
        merged_.push_back({kNew, loose.front().item});
        loose = loose.subspan(1);
      } while (!loose.empty() && front.orderOf(*loose.front().item) == 0);
      if (!isAlone) breakTies(Entries(merged_).subspan(begin), front);
    }
    merged_.insert(merged_.end(), standing_.begin(), standing_.end());
  }

  [[nodiscard]] const std::vector<Entry>& merged() const noexcept { return merged_; }

 private:
  template <class Goes>
  void takeStanding(const Standing& front, Goes goes) {
    const std::size_t count =
        gallop(0, standing_.size(), [&](std::size_t index) { return goes(front.orderOf(*standing_[index].item)); });
    // Of a long stretch, hardly an item is touched.
    for (std::size_t index = count - std::min(count, 2 * kSortStep); index < count; ++index) callAhead(index);
    merged_.insert(merged_.end(), standing_.begin(), standing_.begin() + static_cast<std::ptrdiff_t>(count));
    standing_ = standing_.subspan(count);
  }

  /// Of loops, the ordering by kind reads a detail.
  void callAhead(std::size_t index) const noexcept {
    if (index + 2 * kSortStep >= standing_.size()) return;
    callLine(&standing_[index + 2 * kSortStep].item->place());
    const SummaryItemImpl& next = *standing_[index + kSortStep].item;
    if (next.detailKind() == digestio::kLoop) next.prefetch(digestio::kSurveyVectorization);
    const SummaryItemImpl& near = *standing_[index + kSortStep / 2].item;
    if (near.detailKind() == digestio::kLoop && near.hasDetail(digestio::kSurveyVectorization)) {
      callDetail(near.summaryDetail(digestio::kSurveyVectorization));
    }
  }

  void breakTies(Entries entries, const Standing& front) {
    const SummaryItemImpl& item = *entries.front().item;
    tieBreak_.sort(entries, !front.isNoNumber() && goesByLocator(ordering_.tie, item));
    for (Entry& entry : entries) entry.key = kNew;
  }

  const Ordering& ordering_;
  TieBreak tieBreak_;
  Entries standing_;  // what is left of them
  std::vector<Entry> merged_;
};

}  // namespace

std::vector<bool> SummaryItems::sortIn(SummaryMapping mapping, const std::vector<std::size_t>& loose) {
  std::vector<bool> isNew(size(), false);
  for (const std::size_t slot : loose) isNew[slot] = true;
  const Ordering& ordering = orderingOf(mapping);
  const Misplaced misplaced(ordering, *this, loose);
  if (misplaced.slots().empty()) return isNew;

  std::vector<Entry> standing;
  std::vector<Entry> moving;
  standing.reserve(size() - misplaced.slots().size());
  moving.reserve(misplaced.slots().size());
  auto next = misplaced.slots().begin();
  bool hasLeft = false;  // the one before
  for (std::size_t slot = 0; slot < size(); ++slot) {
    const bool moves = next != misplaced.slots().end() && *next == slot;
    if (moves) ++next;
    (moves ? moving : standing).push_back({isNew[slot] || hasLeft ? kNew : kStays, items_[slot].get()});
    hasLeft = moves;
  }
  sortEntries(ordering, moving);
  const SortIn sorted(ordering, standing, moving);
  isNew.clear();
  for (const Entry& entry : sorted.merged()) isNew.push_back(entry.key == kNew);
  takeOrder(sorted.merged(), 0, size());
  return isNew;
}

}  // namespace kelvar_2_1_7
