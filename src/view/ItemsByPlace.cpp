#include <cstddef>
#include <span>
#include <vector>

#include "items/SummaryItems.h"
#include "view/MergeSort.h"
#include "view/NumberKeys.h"
#include "view/Orderings.h"
#include "view/RadixSort.h"
#include "view/SortEntries.h"
#include "view/TieBreak.h"

namespace kelvar_2_1_7 {

namespace {

/// Sorts items that stand by place, and at one place as TieBreak says: what an ordering leaves undecided stands right
/// already, save what the ordering by locator has to say of items that share a place.
class SortByPlace {
 public:
  SortByPlace(const Ordering& ordering, bool sharePlaces) : ordering_(ordering), sharePlaces_(sharePlaces) {}

  /// The keys are the first number of the ordering, where it has one.
  void sort(Entries entries) { ordering_.count() != 0 ? byNumber(entries, 0) : byName(entries); }

 private:
  /// The keys are the number at `index`.
  void byNumber(Entries entries, std::size_t index) {
    byKey(entries);
    forEachTie(entries, [this, index](Entries tied) {
      if (tied.front().key == kUnordered) return;
      const std::size_t next = ordering_.next(index + 1, *tied.front().item);
      if (next == ordering_.count()) return byName(tied);
      readNumbers(tied, ordering_.numbers[next]);
      byNumber(tied, next);
    });
  }

  void byKey(Entries entries) {
    constexpr std::size_t kMany = 256;  // radix passes cost as much for a few
    if (entries.size() >= kMany) return radixSort(entries, numbers_);
    mergeSort(entries, numbers_, [](const Entry& a, const Entry& b) { return a.key < b.key; });
  }

  void byName(Entries entries) {
    const auto byTie = [this](Entries tied) { this->byTie(tied); };
    ordering_.byLabel ? tieBreak_.byLabel(entries, byTie) : byTie(entries);
  }

  void byTie(Entries entries) {
    if (!sharePlaces_ || entries.empty() || !goesByLocator(ordering_.tie, *entries.front().item)) return;
    const auto isAtPlaceOf = [](const Entry& a, const Entry& b) {
      return b.item->sharesPlace() && a.item->place().display_order(b.item->place()) == 0;
    };
    for (std::size_t begin = 0; begin < entries.size();) {
      std::size_t end = begin + 1;
      if (end + kSortStep < entries.size()) __builtin_prefetch(&entries[end + kSortStep].item->place());
      while (end < entries.size() && isAtPlaceOf(entries[begin], entries[end])) ++end;
      if (end - begin > 1) tieBreak_.bySite(entries.subspan(begin, end - begin));
      begin = end;
    }
  }

  const Ordering& ordering_;
  const bool sharePlaces_;
  TieBreak tieBreak_;
  std::vector<Entry> numbers_;
};

}  // namespace

void SummaryItems::sort(SummaryMapping mapping, std::span<SummaryItemImpl* const> byPlace) {
  if (size() < 2) return;
  const Ordering& ordering = orderingOf(mapping);
  const Number& first = ordering.numbers.front();
  const auto itemAt = [&](std::size_t index) { return index < byPlace.size() ? byPlace[index] : nullptr; };
  std::vector<Entry> entries;
  entries.reserve(size());
  bool sharePlaces = false;
  for (std::size_t i = 0; i < byPlace.size(); ++i) {
    callNumberAhead(i, first, itemAt);
    SummaryItemImpl* const item = byPlace[i];
    if (!item->isShown()) continue;
    sharePlaces = sharePlaces || item->sharesPlace();
    entries.push_back({keyOf(first, *item), item});
  }
  SortByPlace(ordering, sharePlaces).sort(entries);
  takeOrder(entries, 0, size());
}

}  // namespace kelvar_2_1_7
