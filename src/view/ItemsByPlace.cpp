#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "items/CallLine.h"
#include "items/SummaryItems.h"
#include "view/ItemSort.h"
#include "view/KeySort.h"
#include "view/NumberKeys.h"
#include "view/Orderings.h"
#include "view/SiteSort.h"
#include "view/SortEntries.h"
#include "view/TieBreak.h"

namespace kelvar_2_1_7 {

using ItemAtPlace = SummaryItems::ItemAtPlace;

namespace {

/// An item of a list by place, and what it is compared by at the moment.
struct Numbered {
  std::uint64_t key;
  const ItemAtPlace* site;
};
using NumberedItems = std::span<Numbered>;

/// The same of one that is not compared.
struct Unnumbered {
  const ItemAtPlace* site;
};

/// Calls `then` for each that is to be shown.
template <class Then>
void forEachShown(std::span<const ItemAtPlace> sites, bool areAllShown, const Then& then) {
  for (std::size_t i = 0; i < sites.size(); ++i) {
    if (!areAllShown) {
      if (i + kSortStep < sites.size()) callLine(&sites[i + kSortStep].item->place());
      if (!sites[i].item->isShown()) continue;
    }
    then(sites[i]);
  }
}

/// Sorts items that stand by place, and at one place as TieBreak says: what an ordering leaves undecided stands right
/// already, save what the ordering by locator has to say of items that share a place. Of most sites an analysis has
/// nothing to say: those have one number, and stand together as they stood, while the others are sorted. They are not
/// touched for their numbers, and hardly any is for its kinds.
class SortByPlace {
 public:
  SortByPlace(const Ordering& ordering, std::span<const ItemAtPlace> sites, bool areAllShown)
      : ordering_(ordering), sites_(sites) {
    part(areAllShown);
    if (!numbered_.empty()) {
      makeRoomForKeys();
      if (ordering.numbers.front().ofKinds == nullptr) readKeys(numbered_, 0);
      byKeys(numbered_, 0);
    }
    if (!unnumbered_.empty()) {
      takeInEquals();
      byTie(std::span(unnumbered_));
    }
  }

  /// The order is that of these three.
  [[nodiscard]] std::span<const Numbered> before() const noexcept { return std::span(numbered_).first(before_); }
  [[nodiscard]] std::span<const Unnumbered> unnumbered() const noexcept { return unnumbered_; }
  [[nodiscard]] std::span<const Numbered> behind() const noexcept { return std::span(numbered_).subspan(before_); }

 private:
  /// All numbers of an ordering that begins with one of an analysis are of that analysis. Kinds are known already.
  void part(bool areAllShown) {
    const bool hasNumbers = ordering_.numbers.size() != 0;
    const Number& number = ordering_.numbers.front();
    const auto isNumbered = [&](const ItemAtPlace& site) {
      return hasNumbers && (!number.kind || site.details.has(*number.kind));
    };
    if (!hasNumbers || number.kind) unnumbered_.reserve(sites_.size());
    if (hasNumbers) numbered_.reserve(sites_.size());
    forEachShown(sites_, areAllShown, [&](const ItemAtPlace& site) {
      if (!isNumbered(site)) {
        unnumbered_.push_back({&site});
      } else {
        numbered_.push_back({number.ofKinds != nullptr ? keyOfKinds(number, site) : 0, &site});
      }
    });
  }

  void makeRoomForKeys() {
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      if (ordering_.sharesDetail(i)) keys_[i] = std::make_unique_for_overwrite<std::uint64_t[]>(sites_.size());
    }
  }

  /// By the number at `index` and those behind it.
  void byNumber(NumberedItems items, std::size_t index) {
    if (index == ordering_.numbers.size()) return byTie(items);
    readKeys(items, index);
    byKeys(items, index);
  }

  /// The same where the number at `index` has been read.
  void byKeys(NumberedItems items, std::size_t index) {
    sortByKey(items, buffer_);
    forEachTie(items, [this, index](NumberedItems tied) {
      if (tied.front().key == kUnordered) return;
      byNumber(tied, ordering_.next(index + 1, *tied.front().site->item));
    });
  }

  /// Reads the numbers behind it too that the same detail has: no item that ties is visited for them once more.
  void readKeys(NumberedItems items, std::size_t index) {
    if (ordering_.sharesDetail(index)) {
      for (Numbered& item : items) item.key = keyOfNumber(index, item);
      return;
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
      callNumberAhead(i, ordering_.numbers[index], itemsOf(items));
      const SummaryItemImpl& item = *items[i].site->item;
      items[i].key = keyOf(ordering_.numbers[index].read(item));
      for (std::size_t next = index + 1; ordering_.sharesDetail(next); ++next) {
        keyOfNumber(next, items[i]) = keyOf(ordering_.numbers[next].read(item));
      }
    }
  }

  /// Hardly touches an item.
  static std::uint64_t keyOfKinds(const Number& number, const ItemAtPlace& site) {
    const SiteKinds kinds = site.kinds;
    return keyOf(kinds.areKnown() ? number.ofKinds(kinds.detail(), kinds.annotation()) : number.read(*site.item));
  }

  std::uint64_t& keyOfNumber(std::size_t index, const Numbered& item) {
    return keys_[index][static_cast<std::size_t>(item.site - sites_.data())];
  }

  /// Finds where those without numbers stand among the others, some of which may come to the same: those stand by place
  /// with them.
  void takeInEquals() {
    const auto [first, last] = equalByNumbers(ordering_, *unnumbered_.front().site->item, numbered_, itemOf<Numbered>);
    before_ = static_cast<std::size_t>(first - numbered_.begin());
    if (first == last) return;
    const auto alone = static_cast<std::ptrdiff_t>(unnumbered_.size());
    for (auto item = first; item != last; ++item) unnumbered_.push_back({item->site});
    numbered_.erase(first, last);
    // The addresses of sites order as their places do.
    const auto standsBefore = [](const Unnumbered& a, const Unnumbered& b) { return a.site < b.site; };
    std::sort(unnumbered_.begin() + alone, unnumbered_.end(), standsBefore);
    std::inplace_merge(unnumbered_.begin(), unnumbered_.begin() + alone, unnumbered_.end(), standsBefore);
  }

  template <class Record>
  void byTie(std::span<Record> items) {
    if (!goesByLocator(ordering_.tie, *items.front().site->item)) return;
    for (std::size_t begin = 0, end = 1; begin < items.size(); begin = end++) {
      while (end < items.size() && items[end].site->place == items[begin].site->place) ++end;
      if (end - begin > 1) sortBySite(items.subspan(begin, end - begin));
    }
  }

  const Ordering& ordering_;
  const std::span<const ItemAtPlace> sites_;
  std::vector<Numbered> numbered_;
  std::vector<Unnumbered> unnumbered_;
  std::size_t before_ = 0;  // how many of those with numbers stand before those without
  std::array<std::unique_ptr<std::uint64_t[]>, Numbers::kMost> keys_;  // of numbers that were read with another
  std::vector<Numbered> buffer_;
};

/// An item and its place, and what a list by place keeps of it, which the same visit reads.
struct PlacedItem {
  std::uint64_t key;
  SummaryItemImpl* item;
  sitenotes::locator_t place;
  KindSet details;
  SiteKinds kinds;

  explicit PlacedItem(SummaryItemImpl* of)
      : key(0), item(of), place(of->place()), details(of->seen()), kinds(of->detailKind(), of->annotationKind()) {}
  void setItem(SummaryItemImpl* other) noexcept {
    item = other;
    details = other->seen();
    kinds = SiteKinds(other->detailKind(), other->annotationKind());
  }
};

void addPlaced(std::vector<PlacedItem>& placed, const SummaryItems& items) {
  for (std::size_t i = 0; i < items.size(); ++i) {
    items.callMarksAhead(i);
    if (items[i] != nullptr) placed.emplace_back(items[i]);
  }
}

}  // namespace

std::vector<ItemAtPlace> SummaryItems::byPlace(const SummaryItems& visible, const SummaryItems& hidden) {
  std::vector<PlacedItem> placed;
  placed.reserve(visible.size() + hidden.size());
  addPlaced(placed, visible);
  addPlaced(placed, hidden);
  std::vector<PlacedItem> buffer;
  SiteSort(buffer).sort(placed, false);
  std::vector<ItemAtPlace> sites;
  sites.reserve(placed.size());
  for (const PlacedItem& item : placed) {
    sites.push_back({item.item, item.details, item.kinds, static_cast<std::uint32_t>(item.key)});
  }
  return sites;
}

void SummaryItems::sort(SummaryMapping mapping, std::span<const ItemAtPlace> byPlace, bool areAllShown) {
  const Ordering& ordering = orderingOf(mapping);
  if (ordering.byLabel) {
    std::vector<Entry> entries;
    entries.reserve(byPlace.size());
    forEachShown(byPlace, areAllShown, [&](const ItemAtPlace& site) { entries.push_back({0, site.item}); });
    if (!entries.empty()) sortEntries(ordering, entries);
    return takeOrder(entries, 0, size());
  }
  const SortByPlace sorted(ordering, byPlace, areAllShown);
  const std::size_t before = sorted.before().size();
  const std::size_t behind = before + sorted.unnumbered().size();
  takeOrder(sorted.before(), 0, before, itemOf<Numbered>);
  takeOrder(sorted.unnumbered(), before, behind, itemOf<Unnumbered>);
  takeOrder(sorted.behind(), behind, size(), itemOf<Numbered>);
}

}  // namespace kelvar_2_1_7
