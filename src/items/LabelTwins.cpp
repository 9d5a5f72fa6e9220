#include "LabelTwins.h"

#include <algorithm>
#include <bit>
#include <boost/sort/spreadsort/integer_sort.hpp>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvar_2_1_7 {

namespace {

using sitenotes::annotation_t;
using Slot = std::uint32_t;

constexpr Slot kNone = std::numeric_limits<Slot>::max();
constexpr annotation_t::kind_t kTakenIn = annotation_t::task;
constexpr annotation_t::kind_t kTaker = annotation_t::taskloop;

/// A slot behind a hash of what its item is looked up by: sorted, like names stand together.
using Key = std::uint64_t;
using Keys = std::vector<Key>;

constexpr Key keyOf(std::uint32_t labelHash, annotation_t::kind_t kind, Slot slot) {
  constexpr std::uint64_t kSpread = 0x9e3779b97f4a7c15;  // the golden ratio's bits: every one of a kind changes many
  const std::uint64_t hash = (std::uint64_t{static_cast<std::uint32_t>(kind)} << 32 | labelHash) * kSpread;
  return (hash & ~std::uint64_t{kNone}) | slot;
}
constexpr Slot slotOf(Key key) {
  return static_cast<Slot>(key);
}
constexpr std::uint64_t hashOf(Key key) {
  return key >> 32;
}
/// The end of the keys from `begin` on that have its hash.
Keys::iterator endOfHash(Keys::iterator begin, Keys::iterator end) {
  return std::find_if(begin, end, [hash = hashOf(*begin)](Key key) { return hashOf(key) != hash; });
}

/// Which hashes came more than once, and by chance a few others: bits that two passes over all keys cost far less than
/// it does to sort them.
class SeenTwice {
 public:
  explicit SeenTwice(std::size_t count)
      : once_(std::bit_ceil(std::max(count, std::size_t{8})) / 8), twice_(once_.size()) {}  // eight bits for each

  void see(const Keys& keys) {
    for (const Key key : keys) {
      const std::uint64_t bit = bitOf(key);
      twice_[wordOf(key)] |= once_[wordOf(key)] & bit;
      once_[wordOf(key)] |= bit;
    }
  }
  void dropOthers(Keys& keys) const {
    std::erase_if(keys, [this](Key key) { return (twice_[wordOf(key)] & bitOf(key)) == 0; });
  }

 private:
  [[nodiscard]] std::size_t wordOf(Key key) const noexcept { return (hashOf(key) >> 6) & (once_.size() - 1); }
  static constexpr std::uint64_t bitOf(Key key) noexcept { return std::uint64_t{1} << (hashOf(key) & 63); }

  std::vector<std::uint64_t> once_;
  std::vector<std::uint64_t> twice_;
};

/// The slots whose items share a label and an annotation kind, in a list that is only ever touched at its front: a
/// slot that has been visited leaves one occupied slot of its group behind at most, since it takes in the lowest
/// other one. So whoever is visited stands first or second, and a search is a look at the front.
/// Only items that have a twin or a taker, or are one, take part; the last item of the list never does.
class Twins {
 public:
  explicit Twins(const SummaryItems& items) : items_(items), groupOf_(items.size(), kNone), next_(items.size(), kNone) {
    Keys keys;    // by label and kind
    Keys wanted;  // those that may be taken in, by the label and kind of who would
    readKeys(keys, wanted);
    SeenTwice seen(keys.size());
    seen.see(keys);
    seen.see(wanted);
    seen.dropOthers(keys);
    seen.dropOthers(wanted);
    boost::sort::spreadsort::integer_sort(keys.begin(), keys.end());
    boost::sort::spreadsort::integer_sort(wanted.begin(), wanted.end());

    std::vector<std::pair<Slot, Slot>> takers;  // a slot, and the group of who takes its item in
    auto want = wanted.begin();
    for (auto key = keys.begin(); key != keys.end();) {
      const auto end = endOfHash(key, keys.end());
      while (want != wanted.end() && hashOf(*want) < hashOf(*key)) ++want;
      const bool isWanted = want != wanted.end() && hashOf(*want) == hashOf(*key);
      const auto firstGroup = static_cast<Slot>(first_.size());
      if (isWanted || end - key > 1) addGroups(key, end);
      for (; want != wanted.end() && hashOf(*want) == hashOf(*key); ++want) {
        const Slot group = takerAmong(firstGroup, items_[slotOf(*want)]->labelText());
        if (group != kNone) takers.emplace_back(slotOf(*want), group);
      }
      key = end;
    }
    for (const auto& [slot, group] : takers) {
      if (groupOf_[slot] == kNone) addGroup(slot);
      takerGroup_[groupOf_[slot]] = group;
    }
  }

  [[nodiscard]] bool takesPart(Slot slot) const { return groupOf_[slot] != kNone; }

  /// The lowest other slot with an item of the same label and kind.
  [[nodiscard]] Slot twinOf(Slot slot) const {
    const Slot first = first_[groupOf_[slot]];
    return first == slot ? next_[slot] : first;
  }
  /// The lowest slot with the item that takes in the one in `slot`.
  [[nodiscard]] Slot takerOf(Slot slot) const {
    const Slot group = takerGroup_[groupOf_[slot]];
    return group == kNone ? kNone : first_[group];
  }

  void dropTwin(Slot slot) {
    Slot& first = first_[groupOf_[slot]];
    if (first == slot) {
      next_[slot] = next_[next_[slot]];
    } else {
      first = next_[first];
    }
  }
  /// The taker leaves its own slot and takes over this one, in front of its group.
  void moveTakerTo(Slot slot) {
    Slot& first = first_[groupOf_[slot]];
    if (first == slot) {
      first = next_[slot];
    } else {
      next_[first] = next_[slot];
    }
    const Slot group = takerGroup_[groupOf_[slot]];
    first_[group] = next_[first_[group]];
    groupOf_[slot] = group;
    pushFront(group, slot);
  }

 private:
  void readKeys(Keys& keys, Keys& wanted) const {
    keys.reserve(items_.size());
    for (Slot slot = 0; slot + 1 < items_.size(); ++slot) {
      items_.callMarksAhead(slot);
      const SummaryItemImpl* const item = items_[slot];
      if (item == nullptr || !item->hasAnnotation() || !item->hasLabel()) continue;
      keys.push_back(keyOf(item->labelHash(), item->annotationKind(), slot));
      if (item->annotationKind() == kTakenIn) wanted.push_back(keyOf(item->labelHash(), kTaker, slot));
    }
  }

  using Name = std::pair<annotation_t::kind_t, std::string_view>;
  [[nodiscard]] Name nameAt(Slot slot) const { return {items_[slot]->annotationKind(), items_[slot]->labelText()}; }

  /// The items of one hash, which may be of several names, by name.
  void addGroups(Keys::iterator begin, Keys::iterator end) {
    const auto before = [this](Key a, Key b) {
      return std::pair(nameAt(slotOf(a)), a) < std::pair(nameAt(slotOf(b)), b);
    };
    std::sort(begin, end, before);
    for (auto key = begin; key != end; ++key) {
      if (key == begin || nameAt(slotOf(key[-1])) != nameAt(slotOf(*key))) {
        addGroup(slotOf(*key));
      } else {
        next_[slotOf(key[-1])] = slotOf(*key);
        groupOf_[slotOf(*key)] = groupOf_[slotOf(key[-1])];
      }
    }
  }
  void addGroup(Slot slot) {
    groupOf_[slot] = static_cast<Slot>(first_.size());
    first_.push_back(slot);
    takerGroup_.push_back(kNone);
  }

  /// The group of the items that take in those of `label`, among the groups from `first` on, which stand by name.
  [[nodiscard]] Slot takerAmong(Slot first, std::string_view label) const {
    const Name name(kTaker, label);
    const auto group = std::lower_bound(first_.begin() + first, first_.end(), name,
                                        [this](Slot slot, const Name& wanted) { return nameAt(slot) < wanted; });
    return group != first_.end() && nameAt(*group) == name ? static_cast<Slot>(group - first_.begin()) : kNone;
  }

  void pushFront(Slot group, Slot slot) {
    next_[slot] = first_[group];
    first_[group] = slot;
  }

  const SummaryItems& items_;
  std::vector<Slot> groupOf_;     // by slot
  std::vector<Slot> next_;        // by slot: the next one of its group
  std::vector<Slot> first_;       // by group
  std::vector<Slot> takerGroup_;  // by group
};

}  // namespace

void foldLabelTwins(SummaryItems& items) {
  if (items.size() < 2) return;
  Twins twins(items);
  const auto at = [&](Slot slot) -> SummaryItems::value_type& { return items.begin()[slot]; };

  const Slot end = static_cast<Slot>(items.size() - 1);
  for (Slot slot = 0; slot < end; ++slot) {
    if (!twins.takesPart(slot) || !at(slot)) continue;
    const Slot twin = twins.twinOf(slot);
    const Slot taker = twins.takerOf(slot);
    if (twin < taker) {
      items.own(at(slot)).merge(*at(twin));
      twins.dropTwin(slot);
      at(twin).reset();
    } else if (taker != kNone) {
      items.own(at(taker)).merge(*at(slot));
      twins.moveTakerTo(slot);
      at(slot) = std::move(at(taker));
    }
  }
  items.truncate(static_cast<std::size_t>(std::remove(items.begin(), items.end(), nullptr) - items.begin()));
}

}  // namespace kelvar_2_1_7
