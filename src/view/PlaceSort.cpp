#include <span>

#include "items/PlaceOrder.h"
#include "view/MergeSort.h"

namespace kelvar_2_1_7 {

void sortByPlace(std::vector<Placed>& sites) {
  std::vector<Placed> buffer;
  mergeSort(std::span(sites), buffer,
            [](const Placed& a, const Placed& b) { return a.place.display_order(b.place) < 0; });
}

}  // namespace kelvar_2_1_7
