#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "items/CallLine.h"
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
    for (std::size_t i = 0; i < ordering.count() && !ordering.isIdle(i, item); ++i) {
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
  std::array<std::uint64_t, Ordering::kMostNumbers> keys_{};
  std::size_t count_ = 0;
  sitenotes::locator_t place_;
};

/// What the key of an entry says of it: whether it was loose, or stands behind another one than before.
constexpr std::uint64_t kStays = 0;
constexpr std::uint64_t kNew = 1;

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
    while (!standing_.empty() && goes(front.orderOf(*standing_.front().item))) {
      callAhead();
      merged_.push_back(standing_.front());
      standing_ = standing_.subspan(1);
    }
  }

  /// Of loops, the ordering by kind reads a detail.
  void callAhead() const noexcept {
    if (2 * kSortStep >= standing_.size()) return;
    callLine(&standing_[2 * kSortStep].item->place());
    const SummaryItemImpl& next = *standing_[kSortStep].item;
    if (next.detailKind() == digestio::kLoop) next.prefetch(digestio::kSurveyVectorization);
    const SummaryItemImpl& near = *standing_[kSortStep / 2].item;
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
  if (loose.empty()) return std::vector<bool>(size(), false);
  std::vector<Entry> standing;
  std::vector<Entry> others;
  standing.reserve(size() - loose.size());
  others.reserve(loose.size());
  auto nextLoose = loose.begin();
  std::uint64_t key = kStays;
  for (std::size_t slot = 0; slot < size(); ++slot) {
    const bool isLoose = nextLoose != loose.end() && *nextLoose == slot;
    if (isLoose) ++nextLoose;
    (isLoose ? others : standing).push_back({key, items_[slot].get()});
    key = isLoose ? kNew : kStays;
  }
  sortEntries(orderingOf(mapping), others);
  const SortIn sorted(orderingOf(mapping), standing, others);
  std::vector<bool> isNew;
  isNew.reserve(size());
  for (const Entry& entry : sorted.merged()) isNew.push_back(entry.key == kNew);
  takeOrder(sorted.merged(), 0, size());
  return isNew;
}

}  // namespace kelvar_2_1_7
