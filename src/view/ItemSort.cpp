#include <algorithm>
#include <array>
#include <boost/endian/conversion.hpp>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "items/SummaryItems.h"
#include "view/MergeSort.h"
#include "view/Orderings.h"
#include "view/RadixSort.h"
#include "view/SiteFigures.h"

namespace kelvar_2_1_7 {

namespace {

/// An item and what it is compared by at the moment.
template <class Key>
struct Keyed {
  Key key;
  SummaryItemImpl* item;
};

/// The common one: a key that is a number or can be written as one.
using Entry = Keyed<std::uint64_t>;
using Entries = std::span<Entry>;

/// The key of what is not a number. No ordering puts it before or behind anything; so that it cannot come between
/// others it stands last.
constexpr std::uint64_t kUnordered = std::numeric_limits<std::uint64_t>::max();

/// Orders like the number. Zeros are equal.
std::uint64_t rank(double number) noexcept {
  return std::isnan(number) ? kUnordered : orderedBits(number + 0.0);
}

/// Eight bytes of a text from `offset` on as a number that orders as they do; what the text lacks counts as zero bytes.
std::uint64_t wordAt(const std::string& text, std::size_t offset) noexcept {
  std::uint64_t word = 0;
  if (offset < text.size()) std::memcpy(&word, text.data() + offset, std::min(sizeof word, text.size() - offset));
  return boost::endian::big_to_native(word);
}
/// How many items ahead memory is called for.
constexpr std::size_t kStep = 16;

constexpr std::size_t kWord = sizeof(std::uint64_t);
/// So far labels are compared word by word, and then as texts.
constexpr std::size_t kLabelWordsEnd = 3 * kWord;

/// Calls `then` for each group of two or more neighbours with one key. It may use the keys for others.
template <class Then>
void forEachTie(Entries entries, const Then& then) {
  for (std::size_t begin = 0; begin < entries.size();) {
    std::size_t end = begin + 1;
    while (end < entries.size() && entries[end].key == entries[begin].key) ++end;
    if (end + kStep < entries.size()) __builtin_prefetch(&entries[end + kStep].item->place());
    if (end - begin > 1) then(entries.subspan(begin, end - begin));
    begin = end;
  }
}

/// Calls `then` for each group of two or more neighbours at one place, in a list by place.
template <class Then>
void forEachPlace(Entries entries, const Then& then) {
  const auto isAtPlaceOf = [](const Entry& a, const Entry& b) {
    return b.item->sharesPlace() && a.item->place().display_order(b.item->place()) == 0;
  };
  for (std::size_t begin = 0; begin < entries.size();) {
    std::size_t end = begin + 1;
    if (end + kStep < entries.size()) __builtin_prefetch(&entries[end + kStep].item->place());
    while (end < entries.size() && isAtPlaceOf(entries[begin], entries[end])) ++end;
    if (end - begin > 1) then(entries.subspan(begin, end - begin));
    begin = end;
  }
}

/// Sorts items by one key after the other: each key is read once, and only of items that all keys before it left equal.
/// What an ordering leaves undecided is decided by place, annotation kind, detail kind, label, handle and what the
/// analyses say, so that the order of equal rows has no history. Items themselves are left alone.
class ItemSort {
 public:
  /// Entries in any order, or by place: then what an ordering leaves undecided stands right, if no two share a place.
  enum class Given { kAnyhow, kByPlace, kByPlaceOfItsOwn };

  ItemSort(const Ordering& ordering, Given given) : ordering_(ordering), given_(given) {}

  void sort(Entries entries) { byNumbers(entries, 0); }
  /// By place and what else decides between equals.
  void sortByPlace(Entries entries) { byPlace(entries, false); }

 private:
  /// Memory for the lists of one sort of key, one after the other.
  template <class Key>
  struct Room {
    std::vector<Keyed<Key>> keyed;
    std::vector<Keyed<Key>> buffer;
  };

  void byNumbers(Entries entries, std::size_t next) {
    const Number number = next < ordering_.numbers.size() ? ordering_.numbers[next] : Number();
    if (number.read == nullptr) return byName(entries);
    readNumbers(entries, number);
    byKey(entries, [this, next](Entries tied) {
      // Two that are no numbers are no tie of the ordering: it has nothing more to say of them.
      if (tied.front().key == kUnordered) return byPlace(tied, false);
      byNumbers(tied, next + 1);
    });
  }

  /// Items and their details lie anywhere in memory: they are called for some steps ahead.
  static void readNumbers(Entries entries, const Number& number) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (i + 2 * kStep < entries.size()) entries[i + 2 * kStep].item->prefetch(number.kind);
      if (i + kStep < entries.size()) __builtin_prefetch(entries[i + kStep].item->summaryDetail(number.kind));
      entries[i].key = rank(number.read(*entries[i].item));
    }
  }

  void byName(Entries entries) {
    if (!ordering_.byLabel) return byTie(entries);
    byLabel(entries, 0, [this](Entries tied) { byTie(tied); });
  }

  void byTie(Entries entries) {
    if (!entries.empty()) byPlace(entries, goesByLocator(ordering_.tie, *entries.front().item));
  }

  /// By place; at one place as the ordering by locator says, if it has a say, on top of what is decided for it.
  void byPlace(Entries entries, bool hasSay) {
    if (given_ != Given::kAnyhow) {
      if (hasSay && given_ == Given::kByPlace) forEachPlace(entries, [this](Entries there) { bySite(there); });
      return;
    }
    byOwnKey(
        entries, places_, [](const SummaryItemImpl& item) { return item.place(); },
        [](const sitenotes::locator_t& a, const sitenotes::locator_t& b) { return a.display_order(b) < 0; },
        [this, hasSay](Entries tied) {
          byKinds(tied);
          if (hasSay) bySite(tied);
        });
  }

  void bySite(Entries entries) {
    sites_.keyed.clear();
    for (const Entry& entry : entries) sites_.keyed.push_back({Site(*entry.item), entry.item});
    mergeSort(std::span(sites_.keyed), sites_.buffer,
              [](const Keyed<Site>& a, const Keyed<Site>& b) { return siteBefore(a.key, b.key); });
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].item = sites_.keyed[i].item;
  }

  void byKinds(Entries entries) {
    byKey(
        entries,
        [](const SummaryItemImpl& item) {
          return std::uint64_t{static_cast<std::uint32_t>(item.annotationKind())} << 32 |
                 static_cast<std::uint32_t>(item.detailKind());
        },
        [this](Entries tied) { byLabel(tied, 0, [this](Entries named) { byHandle(named); }); });
  }

  void byHandle(Entries entries) {
    byKey(
        entries, [](const SummaryItemImpl& item) { return std::uint64_t{item.handle()}; },
        [this](Entries tied) { byFigures(tied, siteFigures()); });
  }

  void byFigures(Entries entries, std::span<const Figure> figures) {
    if (figures.empty()) return;
    byKey(entries, figures.front(), [this, figures](Entries tied) { byFigures(tied, figures.subspan(1)); });
  }

  template <class Then>
  void byLabel(Entries entries, std::size_t offset, const Then& then) {
    if (offset < kLabelWordsEnd) {
      return byKey(
          entries, [offset](const SummaryItemImpl& item) { return wordAt(item.labelText(), offset); },
          [this, offset, &then](Entries tied) { byLabel(tied, offset + kWord, then); });
    }
    byOwnKey(
        entries, texts_, [](const SummaryItemImpl& item) { return std::string_view(item.labelText()); }, std::less<>(),
        then);
  }

  /// Sorts by a number of each item, and hands on what it leaves equal.
  template <class Read, class Then>
  void byKey(Entries entries, Read read, const Then& then) {
    for (Entry& entry : entries) entry.key = read(*entry.item);
    byKey(entries, then);
  }
  template <class Then>
  void byKey(Entries entries, const Then& then) {
    constexpr std::size_t kMany = 256;  // radix passes cost as much for a few
    const auto before = [](const Entry& a, const Entry& b) { return a.key < b.key; };
    if (given_ != Given::kAnyhow && entries.size() >= kMany) {
      radixSort(entries, numbers_);
    } else {
      mergeSort(entries, numbers_, before);
    }
    forEachTie(entries, then);
  }

  /// The same for a key that is no number.
  template <class Key, class Read, class Less, class Then>
  void byOwnKey(Entries entries, Room<Key>& room, Read read, Less less, const Then& then) {
    room.keyed.clear();
    room.keyed.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (i + kStep < entries.size()) __builtin_prefetch(&entries[i + kStep].item->place());
      room.keyed.push_back({read(*entries[i].item), entries[i].item});
    }
    const auto before = [less](const Keyed<Key>& a, const Keyed<Key>& b) { return less(a.key, b.key); };
    mergeSort(std::span(room.keyed), room.buffer, before);
    // The entries say what is equal: `then` may need the room again.
    std::uint64_t group = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (i != 0 && before(room.keyed[i - 1], room.keyed[i])) ++group;
      entries[i] = {group, room.keyed[i].item};
    }
    forEachTie(entries, then);
  }

  const Ordering& ordering_;
  const Given given_;
  std::vector<Entry> numbers_;
  Room<sitenotes::locator_t> places_;
  Room<std::string_view> texts_;
  Room<Site> sites_;
};

/// The list's items, null entries left out.
void addEntries(std::vector<Entry>& entries, const SummaryItems& items) {
  entries.reserve(entries.size() + items.size());
  for (const SummaryItems::value_type& item : items) {
    if (item) entries.push_back({0, item.get()});
  }
}

}  // namespace

void SummaryItems::sort(SummaryMapping mapping) {
  if (size() < 2) return;
  std::vector<Entry> entries;
  addEntries(entries, *this);
  ItemSort(orderingOf(mapping), ItemSort::Given::kAnyhow).sort(entries);
  takeOrder(entries);
}

void SummaryItems::sort(SummaryMapping mapping, std::span<SummaryItemImpl* const> byPlace) {
  if (size() < 2) return;
  std::vector<Entry> entries;
  entries.reserve(size());
  auto given = ItemSort::Given::kByPlaceOfItsOwn;
  for (std::size_t i = 0; i < byPlace.size(); ++i) {
    if (i + kStep < byPlace.size()) __builtin_prefetch(byPlace[i + kStep]);
    if (!byPlace[i]->isShown()) continue;
    if (byPlace[i]->sharesPlace()) given = ItemSort::Given::kByPlace;
    entries.push_back({0, byPlace[i]});
  }
  ItemSort(orderingOf(mapping), given).sort(entries);
  takeOrder(entries);
}

template <class Entries>
void SummaryItems::takeOrder(const Entries& entries) noexcept {
  // Null entries stand last. Every item changes its owner at most once.
  for (std::size_t i = 0; i < items_.size(); ++i) {
    static_cast<void>(items_[i].release());
    items_[i].reset(i < entries.size() ? entries[i].item : nullptr);
  }
}

std::vector<SummaryItemImpl*> SummaryItems::byPlace(const SummaryItems& visible, const SummaryItems& hidden) {
  std::vector<Entry> entries;
  addEntries(entries, visible);
  addEntries(entries, hidden);
  ItemSort(orderingOf(kSortLocator), ItemSort::Given::kAnyhow).sortByPlace(entries);
  std::vector<SummaryItemImpl*> items;
  items.reserve(entries.size());
  for (const Entry& entry : entries) {
    const bool isFirst = items.empty() || items.back()->place().display_order(entry.item->place()) != 0;
    entry.item->setSharesPlace(!isFirst);
    items.push_back(entry.item);
  }
  return items;
}

}  // namespace kelvar_2_1_7
