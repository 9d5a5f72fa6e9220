#include "LabelTwins.h"

#include <algorithm>
#include <boost/container_hash/hash.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
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

struct Name {
  std::string_view label;
  annotation_t::kind_t kind;
  bool operator==(const Name&) const = default;
  friend std::size_t hash_value(const Name& name) {
    std::size_t seed = std::hash<std::string_view>()(name.label);
    boost::hash_combine(seed, static_cast<std::int32_t>(name.kind));
    return seed;
  }
};

/// The slots whose items share a label and an annotation kind, in a list that is only ever touched at its front: a
/// slot that has been visited leaves one occupied slot of its group behind at most, since it takes in the lowest
/// other one. So whoever is visited stands first or second, and a search is a look at the front.
class Twins {
 public:
  explicit Twins(const SummaryItems& items) : groupOf_(items.size(), kNone), next_(items.size(), kNone) {
    boost::unordered_flat_map<Name, Slot, boost::hash<Name>> groups;
    groups.reserve(items.size());
    // Back to front, so that each list comes out in ascending order. The last item takes no part.
    for (std::size_t slot = items.size() - 1; slot-- > 0;) {
      items.callBehind(slot);
      if (!takesPart(items[slot])) continue;
      const Name name{items[slot]->labelText(), items[slot]->annotationKind()};
      const auto [group, isNew] = groups.try_emplace(name, static_cast<Slot>(first_.size()));
      if (isNew) first_.push_back(kNone);
      groupOf_[slot] = group->second;
      pushFront(group->second, static_cast<Slot>(slot));
    }
    findTakers(items, groups);
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
  static bool takesPart(const SummaryItemImpl* item) {
    return item != nullptr && item->hasAnnotation() && !item->labelText().empty();
  }

  void pushFront(Slot group, Slot slot) {
    next_[slot] = first_[group];
    first_[group] = slot;
  }

  template <class Groups>
  void findTakers(const SummaryItems& items, const Groups& groups) {
    takerGroup_.assign(first_.size(), kNone);
    for (std::size_t group = 0; group < first_.size(); ++group) {
      const SummaryItemImpl* item = items[first_[group]];
      if (item->annotationKind() != kTakenIn) continue;
      const auto taker = groups.find(Name{item->labelText(), kTaker});
      if (taker != groups.end()) takerGroup_[group] = taker->second;
    }
  }

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
      at(slot)->merge(*at(twin));
      twins.dropTwin(slot);
      at(twin).reset();
    } else if (taker != kNone) {
      at(taker)->merge(*at(slot));
      twins.moveTakerTo(slot);
      at(slot) = std::move(at(taker));
    }
  }
  items.truncate(static_cast<std::size_t>(std::remove(items.begin(), items.end(), nullptr) - items.begin()));
}

}  // namespace kelvar_2_1_7
