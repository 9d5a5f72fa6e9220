#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The n-th of some sites, and where it stands.
struct Placed {
  sitenotes::locator_t place{toolbelt::path_t(), 0, 0};
  std::size_t index = 0;
  std::uint64_t key = 0;  // once they are sorted: the same for sites of one place
};

/// Orders sites by place; those of one place stay as they were, if their leaves and lines are the same. Defined with
/// the view, beside the one sort.
void sortByPlace(std::vector<Placed>& sites);

/// The indices of `count` sites by place. Items that are made in this order lie in memory as most walks over their
/// list go.
template <class PlaceOf>
[[nodiscard]] std::vector<Placed> placeOrder(std::size_t count, PlaceOf placeOf) {
  std::vector<Placed> sites;
  sites.reserve(count);
  for (std::size_t index = 0; index < count; ++index) sites.push_back({placeOf(index), index});
  sortByPlace(sites);
  return sites;
}

}  // namespace kelvar_2_1_7
