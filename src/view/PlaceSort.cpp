#include "view/PlaceSort.h"

#include <span>

#include "items/PlaceOrder.h"

namespace kelvar_2_1_7 {

void sortByPlace(std::vector<Placed>& sites) {
  std::vector<Placed> buffer;
  PlaceSort(buffer).sort(sites);
}

}  // namespace kelvar_2_1_7
