#pragma once

#include <vector>

#include "items/SummaryItems.h"
#include "view/ViewSettings.h"
#include "view/ordering/PlaceOrder.h"

namespace kelvar_2_1_7 {

/// Keeps two lists as a view: what is shown, in its order, and the rest.
class View {
 public:
  /// Call this after the lists' items were replaced.
  void itemsChanged() noexcept { byPlace_.clear(); }
  /// Brings the lists up to date: `visible` becomes what the settings show, in their order, and `hidden` the rest, of
  /// all items in the two. Always filters and sorts anew: details may answer differently now. When an exception passes,
  /// each item is still in exactly one of them, and the next rebuild leads to the same view. Null entries are hidden
  /// only while some analysis kind is off.
  void rebuild(const ViewSettings& settings, SummaryItems& visible, SummaryItems& hidden);

 private:
  void sort(const ViewSettings& settings, SummaryItems& visible, const SummaryItems& hidden);

  /// All items of both lists by place, from the first sort on until they change. A caller that sorts once usually sorts
  /// again, and places are what takes longest to sort.
  std::vector<PlacedItem> byPlace_;
};

}  // namespace kelvar_2_1_7
