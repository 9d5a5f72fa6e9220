#pragma once

#include <optional>
#include <vector>

#include "items/SummaryItems.h"
#include "view/ViewSettings.h"

namespace kelvar_2_1_7 {

/// Keeps two lists as a view: what is shown, in its order, and the rest.
class View {
 public:
  /// The lists hold other items now, or items that have changed.
  void itemsChanged() noexcept { byPlace_.clear(); }
  /// Brings the lists up to date: `visible` becomes what the settings show, in their order, and `hidden` the rest, of
  /// all that stands in the two. When an exception passes, each item still is in exactly one of them, and the next
  /// rebuild comes to the same view. Null entries are hidden only while some analysis kind is off.
  void rebuild(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden);

 private:
  /// How the visible items stand.
  struct Order {
    SummaryMapping mapping;
    bool reversed;
  };
  void sort(const ViewSettings& settings, SummaryItems& visible, const SummaryItems& hidden);

  std::vector<SummaryItemImpl*> byPlace_;  // all of the lists' items; empty before anyone asked
  std::optional<Order> order_;             // nothing: who knows
};

}  // namespace kelvar_2_1_7
