#include <algorithm>
#include <vector>

#include "Measure.h"
#include "Orderings.h"
#include "Program.h"

namespace kelvar_bench {

using kelvar_2_1_7::SummaryItems;

void registerFold(std::size_t sites) {
  const auto unfolded = [=] { return program(sites).collected(digestio::kSurvey); };
  const auto items = [=] { return unfolded().size(); };
  measure("fold", sites, items, unfolded, [](SummaryItems& list) {
    list.exactMerge(digestio::kSurvey);
    return &list;
  });
  measure("fold-sort", sites, items, unfolded, [](SummaryItems& list) {
    list.sort(kelvar_2_1_7::kSortLocator);
    return &list;
  });
  measure(
      "fold-keys", sites, items,
      [=] {
        std::vector<PlacedItem> keys;
        const SummaryItems list = unfolded();  // temporary: the texts of the keys stay
        for (const auto& item : list) keys.emplace_back(*item);
        return keys;
      },
      [](std::vector<PlacedItem>& keys) {
        std::stable_sort(keys.begin(), keys.end());
        return &keys;
      });
}

}  // namespace kelvar_bench
