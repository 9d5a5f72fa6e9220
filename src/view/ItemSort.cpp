#include "view/ItemSort.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "items/SummaryItems.h"
#include "view/KeySort.h"
#include "view/NumberKeys.h"
#include "view/Orderings.h"
#include "view/SiteSort.h"
#include "view/SortEntries.h"
#include "view/TieBreak.h"

namespace kelvar_2_1_7 {

namespace {

/// An item, a number of it, and its place.
struct PlacedEntry {
  std::uint64_t key;
  SummaryItemImpl* item;
  sitenotes::locator_t place;

  void setItem(SummaryItemImpl* other) noexcept { item = other; }
};
using PlacedEntries = std::span<PlacedEntry>;

/// Sorts items that stand anyhow by one key after the other: each key is read once, and only of items that all keys
/// before it left equal. What an ordering leaves undecided is decided by place, and then by TieBreak. Items themselves
/// are left alone.
class ItemSort {
 public:
  explicit ItemSort(const Ordering& ordering) : ordering_(ordering) {}

  void sort(Entries entries) { ordering_.decider == Decider::kNumbers ? byNumbers(entries, 0) : byFewValues(entries); }

 private:
  void byNumbers(Entries entries, std::size_t next) {
    if (next == ordering_.numbers.size()) return byName(entries);
    readNumbers(entries, ordering_.numbers[next]);
    sortByKey(entries, numbers_);
    forEachTie(entries, [this, next](Entries tied) {
      // Two that are no numbers are no tie of the ordering: it has nothing more to say of them.
      tied.front().key == kUnordered ? byPlace(tied, false) : byNumbers(tied, next + 1);
    });
  }

  void byName(Entries entries) {
    const auto byTie = [this](Entries tied) { byPlace(tied, goesByLocator(ordering_.tie, *tied.front().item)); };
    ordering_.byLabel ? tieBreak_.byLabel(entries, byTie) : byTie(entries);
  }

  void byPlace(Entries entries, bool byLocator) {
    readPlaces(entries, {});
    siteSort_.sort(placed_, byLocator);
    takeOrder(entries);
  }

  /// Where nearly all items tie, each is visited once for its first number and its place.
  void byFewValues(Entries entries) {
    const std::size_t first = ordering_.next(0, *entries.front().item);
    readPlaces(entries, first != ordering_.numbers.size() ? ordering_.numbers[first] : Number());
    byFewValues(PlacedEntries(placed_), first);
    takeOrder(entries);
  }

  /// The entries hold the number at `index`.
  void byFewValues(PlacedEntries entries, std::size_t index) {
    if (index == ordering_.numbers.size())
      return siteSort_.sort(entries, goesByLocator(ordering_.tie, *entries.front().item));
    sortByKey(entries, buffer_);
    forEachTie(entries, [this, index](PlacedEntries tied) {
      if (tied.front().key == kUnordered) return siteSort_.sort(tied, false);
      const std::size_t next = ordering_.next(index + 1, *tied.front().item);
      if (next != ordering_.numbers.size()) readNumbers(tied, ordering_.numbers[next]);
      byFewValues(tied, next);
    });
  }

  /// With `number`, if there is one to read.
  void readPlaces(Entries entries, const Number& number) {
    placed_.clear();
    placed_.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
      callNumberAhead(i, number, itemsOf(entries));
      SummaryItemImpl* const item = entries[i].item;
      placed_.push_back({keyOf(number, *item), item, item->place()});
    }
  }

  void takeOrder(Entries entries) const noexcept {
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i] = {placed_[i].key, placed_[i].item};
  }

  const Ordering& ordering_;
  TieBreak tieBreak_;
  std::vector<Entry> numbers_;
  std::vector<PlacedEntry> placed_;
  std::vector<PlacedEntry> buffer_;
  SiteSort<PlacedEntry> siteSort_{buffer_};
};

}  // namespace

void sortEntries(const Ordering& ordering, Entries entries) {
  ItemSort(ordering).sort(entries);
}

void SummaryItems::sort(SummaryMapping mapping) {
  sort(mapping, 0, size());
}

void SummaryItems::sort(SummaryMapping mapping, std::size_t begin, std::size_t end) {
  std::vector<Entry> entries;
  entries.reserve(end - begin);
  for (const value_type& item : std::span(items_).subspan(begin, end - begin)) {
    if (item) entries.push_back({0, item.get()});
  }
  if (!entries.empty()) sortEntries(orderingOf(mapping), entries);
  takeOrder(entries, begin, end);
}

std::pair<std::size_t, std::size_t> SummaryItems::unmeasured(SummaryMapping mapping) const {
  const SummaryItemImpl silent(nullptr, static_cast<digestio::SummaryDetail*>(nullptr), nullptr, 0);
  const auto itemOf = [](const value_type& item) { return item.get(); };
  const auto [first, last] = equalByNumbers(orderingOf(mapping), silent, items_, itemOf);
  return {static_cast<std::size_t>(first - begin()), static_cast<std::size_t>(last - begin())};
}

}  // namespace kelvar_2_1_7
