#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
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

/// Sorts items that stand by place, and at one place as TieBreak says: what an ordering leaves undecided stands right
/// already, save what the ordering by locator has to say of items that share a place. Of most sites an analysis has
/// nothing to say: those are not touched for its numbers, and hardly any is for its kinds.
class SortByPlace {
 public:
  SortByPlace(const Ordering& ordering, std::span<const ItemAtPlace> sites) : ordering_(ordering), sites_(sites) {
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      if (ordering.sharesDetail(i)) keys_[i].resize(sites.size());
    }
  }

  /// Not for orderings by label.
  void sort(NumberedItems items) {
    if (!items.empty()) byNumber(items, ordering_.next(0, *items.front().site->item));
  }

 private:
  /// By the number at `index` and those behind it.
  void byNumber(NumberedItems items, std::size_t index) {
    if (index == ordering_.count()) return byTie(items);
    byKeys(items, index);
    forEachTie(items, [this, index](NumberedItems tied) {
      if (tied.front().key == kUnordered) return;
      byNumber(tied, ordering_.next(index + 1, *tied.front().site->item));
    });
  }

  void byKeys(NumberedItems items, std::size_t index) {
    const Number& number = ordering_.numbers[index];
    const NumberedItems silent = withoutDetail(items, number);
    const NumberedItems others = items.first(items.size() - silent.size());
    readKeys(others, index);
    sortByKey(others, buffer_);
    if (silent.empty()) return;
    const std::uint64_t missing = keyOf(number.read(*silent.front().site->item));
    for (Numbered& item : silent) item.key = missing;
    if (others.empty() || others.back().key < missing) return;
    // The addresses of sites order as their places do.
    std::inplace_merge(others.begin(), others.end(), items.end(), [](const Numbered& a, const Numbered& b) {
      return a.key != b.key ? a.key < b.key : a.site < b.site;
    });
  }

  /// Puts those last, as they stand, of which the analysis that the number is of says nothing: it is the same for all
  /// of them.
  NumberedItems withoutDetail(NumberedItems items, const Number& number) {
    if (!number.kind) return {};
    const auto has = [&number](const Numbered& item) { return item.site->details.has(*number.kind); };
    auto to = std::find_if_not(items.begin(), items.end(), has);
    if (std::none_of(to, items.end(), has)) return {to, items.end()};
    buffer_.clear();
    buffer_.reserve(items.size());
    for (const Numbered& item : std::span(to, items.end())) {
      if (has(item)) {
        *to++ = item;
      } else {
        buffer_.push_back(item);
      }
    }
    std::copy(buffer_.begin(), buffer_.end(), to);
    return {to, items.end()};
  }

  /// Reads the numbers behind it too that the same detail has: no item that ties is visited for them once more.
  void readKeys(NumberedItems items, std::size_t index) {
    if (ordering_.numbers[index].ofKinds != nullptr) return readKinds(items, ordering_.numbers[index]);
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

  static void readKinds(NumberedItems items, const Number& number) {
    for (Numbered& item : items) {
      const SiteKinds kinds = item.site->kinds;
      item.key =
          keyOf(kinds.areKnown() ? number.ofKinds(kinds.detail(), kinds.annotation()) : number.read(*item.site->item));
    }
  }

  std::uint64_t& keyOfNumber(std::size_t index, const Numbered& item) {
    return keys_[index][static_cast<std::size_t>(item.site - sites_.data())];
  }

  void byTie(NumberedItems items) {
    if (!goesByLocator(ordering_.tie, *items.front().site->item)) return;
    for (std::size_t begin = 0, end = 1; begin < items.size(); begin = end++) {
      while (end < items.size() && items[end].site->place == items[begin].site->place) ++end;
      if (end - begin > 1) sortBySite(items.subspan(begin, end - begin));
    }
  }

  const Ordering& ordering_;
  const std::span<const ItemAtPlace> sites_;
  std::array<std::vector<std::uint64_t>, Ordering::kMostNumbers> keys_;  // of numbers that were read with another
  std::vector<Numbered> buffer_;
};

template <class Record, class Make>
std::vector<Record> recordsOf(std::span<const ItemAtPlace> sites, bool areAllShown, const Make& make) {
  std::vector<Record> records;
  records.reserve(sites.size());
  for (std::size_t i = 0; i < sites.size(); ++i) {
    if (!areAllShown) {
      if (i + kSortStep < sites.size()) callLine(&sites[i + kSortStep].item->place());
      if (!sites[i].item->isShown()) continue;
    }
    records.push_back(make(sites[i]));
  }
  return records;
}

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
    auto entries = recordsOf<Entry>(byPlace, areAllShown, [](const ItemAtPlace& site) { return Entry{0, site.item}; });
    if (!entries.empty()) sortEntries(ordering, entries);
    return takeOrder(entries, 0, size());
  }
  auto items = recordsOf<Numbered>(byPlace, areAllShown, [](const ItemAtPlace& site) { return Numbered{0, &site}; });
  SortByPlace(ordering, byPlace).sort(items);
  takeOrder(items, 0, size(), itemOf<Numbered>);
}

}  // namespace kelvar_2_1_7
