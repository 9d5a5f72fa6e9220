#include "view/View.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

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
      if (i + kStep < items.size() && items[i + kStep] != nullptr) __builtin_prefetch(&items[i + kStep]->place());
      const Verdict verdict = verdictOn(settings, items[i]);
      each.push_back(verdict);
      ++counts[verdict];
    }
  }
};

/// Moves the items with `verdict` to the end of `to`, which has room for them.
void take(Verdict verdict, const std::vector<Verdict>& verdicts, SummaryItems& visible, SummaryItems& hidden,
          SummaryItems& to) noexcept {
  auto next = verdicts.begin();
  for (SummaryItems* const list : {&visible, &hidden}) {
    for (SummaryItems::value_type& item : *list) {
      if (*next++ != verdict) continue;
      if (item != nullptr) item->setShown(verdict == kShown);
      to.append(std::move(item));
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

/// Whether the same items are shown as before. (The order of fewer would not stand: the relation of sites at one place
/// knows circles, which open where one of them goes.)
bool filter(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  if (!settings.filtersKinds() && !settings.filtersDetails()) {
    const bool isSame = hidden.empty();
    showAll(visible, hidden);
    return isSame;
  }
  Verdicts verdicts;
  verdicts.each.reserve(visible.size() + hidden.size());
  verdicts.add(settings, visible);
  const bool keepsAll = verdicts.counts[kShown] == visible.size();
  verdicts.add(settings, hidden);
  const bool isSame = keepsAll && verdicts.counts[kShown] == visible.size();

  SummaryItems shown;
  SummaryItems rest;
  shown.reserve(verdicts.counts[kShown]);
  rest.reserve(verdicts.counts[kHiddenByKind] + verdicts.counts[kHiddenByDetail]);
  take(kShown, verdicts.each, visible, hidden, shown);
  take(kHiddenByKind, verdicts.each, visible, hidden, rest);
  take(kHiddenByDetail, verdicts.each, visible, hidden, rest);
  visible.swap(shown);
  hidden.swap(rest);
  return isSame;
}

}  // namespace

void View::rebuild(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  if (!filter(settings, visible, hidden)) order_.reset();
  sort(settings, visible, hidden);
}

void View::itemsChanged() noexcept {
  order_.reset();
  sortedBefore_ = false;
  byPlace_.clear();
}

void View::sort(const ViewSettings& settings, SummaryItems& visible, const SummaryItems& hidden) {
  if (!order_ || order_->mapping != settings.mapping()) {
    order_.reset();
    if (sortedBefore_ && byPlace_.empty()) byPlace_ = SummaryItems::byPlace(visible, hidden);
    byPlace_.empty() ? visible.sort(settings.mapping()) : visible.sort(settings.mapping(), byPlace_);
    sortedBefore_ = true;
    order_ = {settings.mapping(), false};
  }
  if (order_->reversed != settings.isReversed()) std::reverse(visible.begin(), visible.end());
  order_->reversed = settings.isReversed();
}

}  // namespace kelvar_2_1_7
