#include "view/View.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "items/CallLine.h"
#include "view/Orderings.h"

namespace kelvar_2_1_7 {

namespace {

/// What becomes of an item. The hidden list keeps what lacks an analysis before what is of a hidden detail kind.
enum Verdict : unsigned char { kShown, kHiddenByKind, kHiddenByDetail };
constexpr std::size_t kVerdictCount = 3;

Verdict verdictOn(const ViewSettings& settings, const SummaryItemImpl* item) {
  if (item == nullptr) return settings.filtersKinds() ? kHiddenByKind : kShown;
  if (!settings.passesKindFilter(*item)) return kHiddenByKind;
  return settings.passesDetailFilter(*item) ? kShown : kHiddenByDetail;
}

constexpr std::size_t kStep = 16;

/// Decides on every item before any is moved, since details may throw when they are asked.
struct Verdicts {
  std::vector<Verdict> each;  // of the visible list, then of the hidden one
  std::array<std::size_t, kVerdictCount> counts{};

  void add(const ViewSettings& settings, const SummaryItems& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      // Items lie anywhere in memory: they are called for some steps ahead.
      if (i + kStep < items.size() && items[i + kStep] != nullptr) callLine(&items[i + kStep]->place());
      const Verdict verdict = verdictOn(settings, items[i]);
      each.push_back(verdict);
      ++counts[verdict];
    }
  }
};

/// Moves each item to the end of the list of its verdict, which has room for it.
void take(const std::vector<Verdict>& verdicts, SummaryItems& visible, SummaryItems& hidden,
          std::array<SummaryItems, kVerdictCount>& to) noexcept {
  auto next = verdicts.begin();
  for (SummaryItems* const list : {&visible, &hidden}) {
    for (SummaryItems::value_type& item : *list) {
      const Verdict verdict = *next++;
      // What is visible and stays so is known to be shown: most items are not touched.
      if (item != nullptr && (verdict != kShown || list == &hidden)) item->setShown(verdict == kShown);
      to[verdict].append(std::move(item));
    }
  }
}

void showAll(SummaryItems& visible, SummaryItems& hidden) {
  visible.reserve(visible.size() + hidden.size());
  for (SummaryItems::value_type& item : hidden) {
    if (item != nullptr) item->setShown(true);
    visible.append(std::move(item));
  }
  hidden.clear();
}

bool sharePlace(const SummaryItemImpl* a, const SummaryItemImpl* b) {
  return a != nullptr && b != nullptr && a->place().display_order(b->place()) == 0;
}

/// The items that are going to stay visible and have a neighbour at their place that is not: where they will stand.
std::vector<std::size_t> leftBehind(const SummaryItems& visible, const std::vector<Verdict>& verdicts) {
  std::vector<std::size_t> left;
  std::size_t kept = verdicts.front() == kShown ? 1 : 0;
  for (std::size_t i = 1; i < visible.size(); ++i) {
    const bool stays = verdicts[i] == kShown;
    const bool followsOneThatStays = verdicts[i - 1] == kShown;
    if (stays != followsOneThatStays && sharePlace(visible[i - 1], visible[i])) left.push_back(stays ? kept : kept - 1);
    if (stays) ++kept;
  }
  return left;
}

/// What a filter did to the visible list.
struct Filtered {
  bool showsMore = false;
  std::vector<std::size_t> leftBehind = {};  // if it shows no more of a list that stands in order: see there
};

Filtered filter(const ViewSettings& settings, bool areInOrder, SummaryItems& visible, SummaryItems& hidden) {
  if (!settings.filtersKinds() && !settings.filtersDetails()) {
    const bool showsMore = !hidden.empty();
    showAll(visible, hidden);
    return {showsMore};
  }
  Verdicts verdicts;
  verdicts.each.reserve(visible.size() + hidden.size());
  verdicts.add(settings, visible);
  const std::size_t stay = verdicts.counts[kShown];
  verdicts.add(settings, hidden);
  Filtered filtered{verdicts.counts[kShown] != stay};
  if (areInOrder && !filtered.showsMore && stay != visible.size()) {
    filtered.leftBehind = leftBehind(visible, verdicts.each);
  }

  std::array<SummaryItems, kVerdictCount> lists;
  lists[kShown].reserve(verdicts.counts[kShown]);
  lists[kHiddenByKind].reserve(verdicts.counts[kHiddenByKind] + verdicts.counts[kHiddenByDetail]);
  lists[kHiddenByDetail].reserve(verdicts.counts[kHiddenByDetail]);
  take(verdicts.each, visible, hidden, lists);
  for (SummaryItems::value_type& item : lists[kHiddenByDetail]) lists[kHiddenByKind].append(std::move(item));
  visible.swap(lists[kShown]);
  hidden.swap(lists[kHiddenByKind]);
  return filtered;
}

}  // namespace

void View::rebuild(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  const std::optional<Order> order = std::exchange(order_, std::nullopt);
  const bool areInOrder = order && order->mapping == settings.mapping();
  const Filtered filtered = filter(settings, areInOrder, visible, hidden);
  if (areInOrder && !filtered.showsMore) {
    mend(*order, visible, filtered.leftBehind);
    order_ = order;
  }
  sort(settings, visible, hidden);
}

void View::mend(const Order& order, SummaryItems& visible, const std::vector<std::size_t>& leftBehind) {
  const auto firstOf = [&](std::size_t item) {
    while (item > 0 && sharePlace(visible[item - 1], visible[item])) --item;
    return item;
  };
  const auto endOf = [&](std::size_t item) {
    while (++item < visible.size() && sharePlace(visible[item - 1], visible[item])) {
    }
    return item;
  };
  std::size_t mended = 0;
  for (const std::size_t item : leftBehind) {
    if (item < mended) continue;
    const std::size_t first = firstOf(item);
    mended = endOf(item);
    const auto there = std::span(visible).subspan(first, mended - first);
    if (order.reversed) std::reverse(there.begin(), there.end());
    visible.sort(order.mapping, first, mended);
    if (order.reversed) std::reverse(there.begin(), there.end());
  }
}

void View::itemsChanged() noexcept {
  order_.reset();
  sortedBefore_ = false;
  byPlace_.clear();
}

void View::sort(const ViewSettings& settings, SummaryItems& visible, const SummaryItems& hidden) {
  if (!order_) {
    const bool needsPlaces = sortedBefore_ || orderingOf(settings.mapping()).decider == Decider::kPlace;
    if (needsPlaces && byPlace_.empty()) byPlace_ = SummaryItems::byPlace(visible, hidden);
    byPlace_.empty() ? visible.sort(settings.mapping()) : visible.sort(settings.mapping(), byPlace_, hidden.empty());
    sortedBefore_ = true;
    order_ = {settings.mapping(), false};
  }
  if (order_->reversed != settings.isReversed()) std::reverse(visible.begin(), visible.end());
  order_->reversed = settings.isReversed();
}

}  // namespace kelvar_2_1_7
