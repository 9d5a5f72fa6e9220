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

  void sort(Entries entries) { byNumbers(entries, 0); }

 private:
  void byNumbers(Entries entries, std::size_t next) {
    if (next == ordering_.count()) return byName(entries);
    readNumbers(entries, ordering_.numbers[next]);
    byKey(entries);
    forEachTie(entries, [this, next](Entries tied) {
      if (tied.front().key != kUnordered) byNumbers(tied, next + 1);
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
  std::vector<Entry> entries;
  entries.reserve(size());
  bool sharePlaces = false;
  for (std::size_t i = 0; i < byPlace.size(); ++i) {
    if (i + kSortStep < byPlace.size()) __builtin_prefetch(byPlace[i + kSortStep]);
    if (!byPlace[i]->isShown()) continue;
    sharePlaces = sharePlaces || byPlace[i]->sharesPlace();
    entries.push_back({0, byPlace[i]});
  }
  SortByPlace(orderingOf(mapping), sharePlaces).sort(entries);
  takeOrder(entries, 0, size());
}

}  // namespace kelvar_2_1_7
