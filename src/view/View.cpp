#include "view/View.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "view/ordering/ItemSort.h"

namespace kelvar_2_1_7 {

namespace {

/// What becomes of an item. In the hidden list, items that lack an analysis come before those of a hidden detail kind:
/// a later filter brings them back in this order.
enum Verdict : unsigned char { kShown, kHiddenByKind, kHiddenByDetail };
constexpr std::size_t kVerdictCount = 3;

Verdict verdictOn(const ViewSettings& settings, const SummaryItemImpl* item) {
  if (item == nullptr) return settings.filtersKinds() ? kHiddenByKind : kShown;
  if (!settings.passesKindFilter(*item)) return kHiddenByKind;
  return settings.passesDetailFilter(*item) ? kShown : kHiddenByDetail;
}

/// Decides on every item before any is moved, since details may throw when they are asked.
struct Verdicts {
  std::vector<Verdict> each;  // of the visible list, then of the hidden one
  std::array<std::size_t, kVerdictCount> counts{};

  void add(const ViewSettings& settings, const SummaryItems& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      items.prefetchAfter(i);
      const Verdict verdict = verdictOn(settings, items[i]);
      each.push_back(verdict);
      ++counts[verdict];
    }
  }
};

/// Moves each item to the end of the list of its verdict, which has room for it.
void distribute(const std::vector<Verdict>& verdicts, SummaryItems& visible, SummaryItems& hidden,
                std::array<SummaryItems, kVerdictCount>& lists) noexcept {
  auto next = verdicts.begin();
  for (SummaryItems* const list : {&visible, &hidden}) {
    for (SummaryItems::value_type& item : *list) {
      const Verdict verdict = *next++;
      if (item) item->setShown(verdict == kShown);
      lists[verdict].append(std::move(item));
    }
  }
}

void filter(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  if (hidden.empty() && !settings.filtersKinds() && !settings.filtersDetails()) return;
  Verdicts verdicts;
  verdicts.each.reserve(visible.size() + hidden.size());
  verdicts.add(settings, visible);
  verdicts.add(settings, hidden);

  std::array<SummaryItems, kVerdictCount> lists;
  auto& [shown, hiddenByKind, hiddenByDetail] = lists;
  shown.reserve(verdicts.counts[kShown]);
  hiddenByKind.reserve(verdicts.counts[kHiddenByKind] + verdicts.counts[kHiddenByDetail]);
  hiddenByDetail.reserve(verdicts.counts[kHiddenByDetail]);
  distribute(verdicts.each, visible, hidden, lists);
  for (SummaryItems::value_type& item : hiddenByDetail) hiddenByKind.append(std::move(item));
  visible.swap(shown);
  hidden.swap(hiddenByKind);
}

}  // namespace

void View::rebuild(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  filter(settings, visible, hidden);
  sort(settings, visible, hidden);
  if (settings.isReversed()) std::reverse(visible.begin(), visible.end());
}

void View::sort(const ViewSettings& settings, SummaryItems& visible, const SummaryItems& hidden) {
  if (byPlace_.empty()) {
    std::vector<SummaryItemImpl*> items;
    appendItems(items, visible);
    appendItems(items, hidden);
    byPlace_ = placeOrder(items);
  } else {
    breakTiesAnew(byPlace_);
  }
  if (hidden.empty()) return visible.reorder(sorted(settings.mapping(), byPlace_));
  std::vector<PlacedItem> shown;
  shown.reserve(visible.size());
  std::copy_if(byPlace_.begin(), byPlace_.end(), std::back_inserter(shown),
               [](const PlacedItem& placed) { return placed.item->isShown(); });
  visible.reorder(sorted(settings.mapping(), shown));
}

}  // namespace kelvar_2_1_7
