#include "view/ItemSort.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "items/SummaryItems.h"
#include "view/KeySort.h"
#include "view/NumberKeys.h"
#include "view/Orderings.h"
#include "view/PlaceSort.h"
#include "view/SortEntries.h"
#include "view/TieBreak.h"

namespace kelvar_2_1_7 {

namespace {

/// An item, a number of it, and its place.
struct PlacedEntry {
  std::uint64_t key;
  SummaryItemImpl* item;
  sitenotes::locator_t place{toolbelt::path_t(), 0, 0};
};
using PlacedEntries = std::span<PlacedEntry>;

/// Sorts items that stand anyhow by one key after the other: each key is read once, and only of items that all keys
/// before it left equal. What an ordering leaves undecided is decided by place, and then by TieBreak. Items themselves
/// are left alone.
class ItemSort {
 public:
  explicit ItemSort(const Ordering& ordering) : ordering_(ordering) {}

  void sort(Entries entries) { ordering_.mostlyTies ? byFewValues(entries) : byNumbers(entries, 0); }
  /// By place and what else decides between equals. Leaves the number of its place in the key of each.
  void sortByPlace(Entries entries) { byPlace(entries, false); }

 private:
  void byNumbers(Entries entries, std::size_t next) {
    if (next == ordering_.count()) return byName(entries);
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
    byPlace(PlacedEntries(placed_), byLocator);
    takeOrder(entries);
  }

  /// Where nearly all items tie, each is visited once for its first number and its place.
  void byFewValues(Entries entries) {
    const std::size_t first = ordering_.next(0, *entries.front().item);
    readPlaces(entries, first != ordering_.count() ? ordering_.numbers[first] : Number());
    byFewValues(PlacedEntries(placed_), first);
    takeOrder(entries);
  }

  /// The entries hold the number at `index`.
  void byFewValues(PlacedEntries entries, std::size_t index) {
    if (index == ordering_.count()) return byPlace(entries, goesByLocator(ordering_.tie, *entries.front().item));
    sortByKey(entries, buffer_);
    forEachTie(entries, [this, index](PlacedEntries tied) {
      if (tied.front().key == kUnordered) return byPlace(tied, false);
      const std::size_t next = ordering_.next(index + 1, *tied.front().item);
      if (next != ordering_.count()) readNumbers(tied, ordering_.numbers[next]);
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

  void byPlace(PlacedEntries entries, bool byLocator) {
    placeSort_.sort(entries);
    shared_.clear();
    forEachGroup(entries, [this](PlacedEntries atOnePlace) { shared_.push_back(atOnePlace); });
    for (std::size_t i = 0; i < shared_.size(); ++i) {
      if (i + kSortStep < shared_.size()) call(shared_[i + kSortStep]);
      breakTies(shared_[i], byLocator);
    }
  }

  static void call(PlacedEntries entries) noexcept {
    for (const PlacedEntry& entry : entries) SummaryItems::call(entry.item);
  }

  void breakTies(PlacedEntries entries, bool byLocator) {
    tied_.clear();
    for (const PlacedEntry& entry : entries) tied_.push_back({0, entry.item});
    tieBreak_.sort(tied_, byLocator);
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].item = tied_[i].item;
  }

  void takeOrder(Entries entries) const noexcept {
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i] = {placed_[i].key, placed_[i].item};
  }

  const Ordering& ordering_;
  TieBreak tieBreak_;
  std::vector<Entry> numbers_;
  std::vector<Entry> tied_;
  std::vector<PlacedEntry> placed_;
  std::vector<PlacedEntry> buffer_;
  PlaceSort<PlacedEntry> placeSort_{buffer_};
  std::vector<PlacedEntries> shared_;  // entries of one place
};

}  // namespace

void sortEntries(const Ordering& ordering, Entries entries) {
  ItemSort(ordering).sort(entries);
}

namespace {

/// Adds the items that are there.
void addEntries(std::vector<Entry>& entries, std::span<const SummaryItems::value_type> items) {
  entries.reserve(entries.size() + items.size());
  for (const SummaryItems::value_type& item : items) {
    if (item) entries.push_back({0, item.get()});
  }
}

}  // namespace

void SummaryItems::sort(SummaryMapping mapping) {
  sort(mapping, 0, size());
}

void SummaryItems::sort(SummaryMapping mapping, std::size_t begin, std::size_t end) {
  std::vector<Entry> entries;
  addEntries(entries, std::span(items_).subspan(begin, end - begin));
  if (!entries.empty()) sortEntries(orderingOf(mapping), entries);
  takeOrder(entries, begin, end);
}

std::vector<SummaryItems::ItemAtPlace> SummaryItems::byPlace(const SummaryItems& visible, const SummaryItems& hidden) {
  std::vector<Entry> entries;
  addEntries(entries, visible.items_);
  addEntries(entries, hidden.items_);
  ItemSort(orderingOf(kSortLocator)).sortByPlace(entries);
  std::vector<ItemAtPlace> sites;
  sites.reserve(entries.size());
  for (const auto& [place, item] : entries) {
    sites.push_back(
        {item, item->seen(), {item->detailKind(), item->annotationKind()}, static_cast<std::uint32_t>(place)});
  }
  return sites;
}

}  // namespace kelvar_2_1_7
