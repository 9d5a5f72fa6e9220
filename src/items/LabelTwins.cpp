#include "LabelTwins.h"

#include <algorithm>
#include <boost/sort/spreadsort/integer_sort.hpp>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "items/NamedSites.h"

namespace kelvar_2_1_7 {

namespace {

using Name = NamedSites::Name;
using Slot = NamedSites::Slot;

constexpr Slot kNone = std::numeric_limits<Slot>::max();

/// The end of the keys from `begin` on that have its hash.
NameKeys::iterator endOfHash(NameKeys::iterator begin, NameKeys::iterator end) {
  return std::find_if(begin, end, [hash = hashOf(*begin)](NameKey key) { return hashOf(key) != hash; });
}

/// The slots whose items share a label and an annotation kind, in a list that is only ever touched at its front: a
/// slot that has been visited leaves one occupied slot of its group behind at most, since it takes in the lowest
/// other one. So whoever is visited stands first or second, and a search is a look at the front.
/// Only those that have a twin or a taker, or are one, take part.
class Twins {
 public:
  explicit Twins(const NamedSites& sites) : sites_(sites), groupOf_(sites.size(), kNone), next_(sites.size(), kNone) {
    NameKeys keys = sites.names().keys;
    NameKeys wanted = sites.names().wanted;
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
        const Slot group = takerAmong(firstGroup, sites_.nameAt(numberOf(*want)).second);
        if (group != kNone) takers.emplace_back(numberOf(*want), group);
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
  /// The items of one hash, which may be of several names, by name.
  void addGroups(NameKeys::iterator begin, NameKeys::iterator end) {
    const auto before = [this](NameKey a, NameKey b) {
      return std::pair(sites_.nameAt(numberOf(a)), a) < std::pair(sites_.nameAt(numberOf(b)), b);
    };
    std::sort(begin, end, before);
    for (auto key = begin; key != end; ++key) {
      if (key == begin || sites_.nameAt(numberOf(key[-1])) != sites_.nameAt(numberOf(*key))) {
        addGroup(numberOf(*key));
      } else {
        next_[numberOf(key[-1])] = numberOf(*key);
        groupOf_[numberOf(*key)] = groupOf_[numberOf(key[-1])];
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
                                        [this](Slot slot, const Name& wanted) { return sites_.nameAt(slot) < wanted; });
    return group != first_.end() && sites_.nameAt(*group) == name ? static_cast<Slot>(group - first_.begin()) : kNone;
  }

  void pushFront(Slot group, Slot slot) {
    next_[slot] = first_[group];
    first_[group] = slot;
  }

  const NamedSites& sites_;
  std::vector<Slot> groupOf_;     // by slot
  std::vector<Slot> next_;        // by slot: the next one of its group
  std::vector<Slot> first_;       // by group
  std::vector<Slot> takerGroup_;  // by group
};

}  // namespace

void foldLabelTwins(ResultSites& sites) {
  NamedSites named(sites);
  Twins twins(named);
  for (Slot slot = 0; slot < named.size(); ++slot) {
    if (!twins.takesPart(slot) || !named.isThere(slot)) continue;
    const Slot twin = twins.twinOf(slot);
    const Slot taker = twins.takerOf(slot);
    if (twin < taker) {
      twins.dropTwin(slot);
      named.merge(slot, twin);
    } else if (taker != kNone) {
      twins.moveTakerTo(slot);
      named.merge(taker, slot);
      named.move(slot, taker);
    }
  }
  named.putBack();
}

}  // namespace kelvar_2_1_7
