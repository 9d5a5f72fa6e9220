#include "items/joining/FoldLabelTwins.h"

#include <algorithm>
#include <boost/sort/spreadsort/integer_sort.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "items/Groups.h"

// The pass walks the list from front to back. Each item takes in the first other item of its label and annotation kind:
// of A B, A stays; of A B C, A takes B, and then C takes A, so C stays. A task looks for a task loop of its label too.
// If that comes first, the task goes into it, and the task loop moves to the task's slot. The list's last item is left
// out. Suites rely on which item stays, so both quirks remain.
//
// Labels do not interact, so the pass runs for each label by itself. They are found by sorting hashes, and labels that
// come once are skipped. Within a label at most one occupied slot lies before the item that is visited, so only the
// first two occupied slots matter: a visit takes constant time, and the whole pass O(n log n) with the sort.

namespace kelvar_2_1_7 {

namespace {

using Slot = std::uint32_t;

/// An item that may have a twin: the hash of its label and kind above, its slot below, so that they sort by both.
using Candidate = std::uint64_t;
constexpr int kSlotBits = 32;

Slot slotOf(Candidate candidate) noexcept {
  return static_cast<Slot>(candidate);
}

/// What twins share. A task and a task loop count as one kind here.
struct TwinKey {
  std::string_view label;
  sitenotes::annotation_t::kind_t kind;

  explicit TwinKey(const SummaryItemImpl& item)
      : label(item.labelText()),
        kind(item.annotationKind() == kTaskloopAnnotation ? kTaskAnnotation : item.annotationKind()) {}
  bool operator==(const TwinKey&) const = default;
  [[nodiscard]] std::uint32_t hash() const noexcept {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(label)) ^ static_cast<std::uint32_t>(kind) << 27;
  }
};

std::vector<Candidate> candidatesIn(const SummaryItems& items) {
  std::vector<Candidate> candidates;
  candidates.reserve(items.size());
  for (std::size_t slot = 0; slot + 1 < items.size(); ++slot) {
    items.prefetchAfter(slot);
    const SummaryItemImpl* const item = items[slot];
    if (item == nullptr || !item->hasAnnotation() || item->labelText().empty()) continue;
    candidates.push_back(Candidate{TwinKey(*item).hash()} << kSlotBits | slot);
  }
  boost::sort::spreadsort::integer_sort(candidates.begin(), candidates.end());
  return candidates;
}

/// The slots that are still occupied, ascending. Only the first two ever matter.
class SlotList {
 public:
  void append(Slot slot) { slots_.push_back(slot); }
  void prepend(Slot slot) { slots_.push_front(slot); }
  [[nodiscard]] bool empty() const noexcept { return slots_.empty(); }
  [[nodiscard]] Slot front() const noexcept { return slots_.front(); }
  /// Null if `slot` is the only one.
  [[nodiscard]] const Slot* firstBut(Slot slot) const noexcept {
    if (slots_.empty()) return nullptr;
    if (slots_.front() != slot) return &slots_.front();
    return slots_.size() > 1 ? &slots_[1] : nullptr;
  }
  /// `slot` is the first or the second. The second is overwritten by the first, and then the front goes.
  void remove(Slot slot) noexcept {
    if (slots_.front() != slot) slots_[1] = slots_.front();
    slots_.pop_front();
  }

 private:
  std::deque<Slot> slots_;
};

/// The pass over the items of one key, ascending by slot.
class TwinPass {
 public:
  TwinPass(SummaryItems& items, std::span<const Candidate> group) : items_(items), group_(group) {
    for (const Candidate candidate : group) {
      const Slot slot = slotOf(candidate);
      (isTaskloop(slot) ? taskloops_ : others_).append(slot);
    }
  }

  void run() {
    for (const Candidate candidate : group_) {
      if (items_[slotOf(candidate)] != nullptr) visit(slotOf(candidate));
    }
  }

 private:
  void visit(Slot slot) {
    SlotList& kin = isTaskloop(slot) ? taskloops_ : others_;
    const Slot* const twin = kin.firstBut(slot);
    const bool hasTaskloop = !isTaskloop(slot) && !taskloops_.empty();
    if (hasTaskloop && (twin == nullptr || taskloops_.front() < *twin)) {
      moveIntoTaskloop(slot);
    } else if (twin != nullptr) {
      const Slot from = *twin;
      kin.remove(from);
      items_[slot]->merge(items_[from]);
      entry(from).reset();
    }
  }

  void moveIntoTaskloop(Slot slot) {
    const Slot from = taskloops_.front();
    others_.remove(slot);
    taskloops_.remove(from);
    taskloops_.prepend(slot);
    items_[from]->merge(items_[slot]);
    entry(slot) = std::move(entry(from));
  }

  [[nodiscard]] bool isTaskloop(Slot slot) const { return items_[slot]->annotationKind() == kTaskloopAnnotation; }
  [[nodiscard]] SummaryItems::value_type& entry(Slot slot) { return items_.begin()[slot]; }

  SummaryItems& items_;
  const std::span<const Candidate> group_;
  SlotList others_;
  SlotList taskloops_;
};

/// Different labels may share a hash: groups the candidates by key, each group still ascending by slot.
void groupByKey(const SummaryItems& items, std::span<Candidate> ofOneHash) {
  const auto keyOf = [&](Candidate candidate) { return TwinKey(*items[slotOf(candidate)]); };
  std::stable_sort(ofOneHash.begin(), ofOneHash.end(), [&](Candidate a, Candidate b) {
    return std::pair(keyOf(a).kind, keyOf(a).label) < std::pair(keyOf(b).kind, keyOf(b).label);
  });
}

}  // namespace

void foldLabelTwins(SummaryItems& items) {
  std::vector<Candidate> candidates = candidatesIn(items);
  const auto haveSameHash = [](Candidate a, Candidate b) { return a >> kSlotBits == b >> kSlotBits; };
  const auto haveSameKey = [&](Candidate a, Candidate b) {
    const TwinKey key(*items[slotOf(a)]);
    return key == TwinKey(*items[slotOf(b)]);
  };
  forEachGroup(std::span(candidates), haveSameHash, [&](std::span<Candidate> ofOneHash) {
    groupByKey(items, ofOneHash);
    forEachGroup(ofOneHash, haveSameKey, [&](std::span<Candidate> group) { TwinPass(items, group).run(); });
  });
  items.removeNulls();
}

}  // namespace kelvar_2_1_7
