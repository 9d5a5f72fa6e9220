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

/// Decides on every item before any is moved, since details may throw when they are asked.
struct Verdicts {
  std::vector<Verdict> each;  // of the visible list, then of the hidden one
  std::array<std::size_t, kVerdictCount> counts{};

  void add(const ViewSettings& settings, const SummaryItems& items) {
    for (const SummaryItems::value_type& item : items) {
      const Verdict verdict = verdictOn(settings, item.get());
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
      if (*next++ == verdict) to.append(std::move(item));
    }
  }
}

void filter(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  Verdicts verdicts;
  verdicts.each.reserve(visible.size() + hidden.size());
  verdicts.add(settings, visible);
  verdicts.add(settings, hidden);
  if (hidden.empty() && verdicts.counts[kShown] == visible.size()) return;

  SummaryItems shown;
  SummaryItems rest;
  shown.reserve(verdicts.counts[kShown]);
  rest.reserve(verdicts.counts[kHiddenByKind] + verdicts.counts[kHiddenByDetail]);
  take(kShown, verdicts.each, visible, hidden, shown);
  take(kHiddenByKind, verdicts.each, visible, hidden, rest);
  take(kHiddenByDetail, verdicts.each, visible, hidden, rest);
  visible.swap(shown);
  hidden.swap(rest);
}

}  // namespace

void rebuildView(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden) {
  filter(settings, visible, hidden);
  visible.sort(settings.mapping());
  if (settings.isReversed()) std::reverse(visible.begin(), visible.end());
}

}  // namespace kelvar_2_1_7
