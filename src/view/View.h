#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "items/SummaryItems.h"
#include "view/ViewSettings.h"

namespace kelvar_2_1_7 {

/// Keeps two lists as a view: what is shown, in its order, and the rest.
class View {
 public:
  /// The lists hold other items now, or items that have changed.
  void itemsChanged() noexcept;
  /// Brings the lists up to date: `visible` becomes what the settings show, in their order, and `hidden` the rest, of
  /// all that stands in the two. When an exception passes, each item still is in exactly one of them, and the next
  /// rebuild comes to the same view. Null entries are hidden only while some analysis kind is off.
  void rebuild(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden);

 private:
  struct Order {
    SummaryMapping mapping;
    bool reversed;
  };
  /// Sorts what stands at one place with those left behind once more. All others stay in order when some go; sites at
  /// one place may not, since the relation among them knows circles, which open where one of them goes.
  static void mend(const Order& order, SummaryItems& visible, const std::vector<std::size_t>& leftBehind);
  void sort(const ViewSettings& settings, SummaryItems& visible, const SummaryItems& hidden);

  /// How the visible items stand; nothing: who knows.
  std::optional<Order> order_;
  /// Whether they were sorted before, as the items are now. Who sorts them once again will do so more often, and it
  /// pays to keep them by place. Where the place decides, it pays at once.
  bool sortedBefore_ = false;
  std::vector<SummaryItems::ItemAtPlace> byPlace_;  // all of the lists' items, or none
};

}  // namespace kelvar_2_1_7
