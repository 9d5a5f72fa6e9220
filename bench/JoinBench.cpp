#include <utility>

#include "Measure.h"
#include "Program.h"
#include "items/joining/Join.h"

namespace kelvar_bench {

using kelvar_2_1_7::SummaryItemImpl;
using kelvar_2_1_7::SummaryItems;

namespace {

struct Lists {
  SummaryItems list;
  SummaryItems incoming;
};

/// A result with exactly one item for each site.
Lists listsToJoin(std::size_t sites) {
  Lists lists{program(sites).annotated(), program(sites).collected(digestio::kSuitability)};
  lists.incoming.exactMerge(digestio::kSuitability);
  return lists;
}

SummaryItems copyOf(const SummaryItems& list) {
  SummaryItems copies;
  copies.reserve(list.size());
  for (const auto& item : list) copies.append(SummaryItemImpl::copySummaryItem(item.get()));
  return copies;
}

}  // namespace

void registerJoin(std::size_t sites) {
  const auto items = [=] { return sites; };
  measure(
      "join", sites, items, [=] { return listsToJoin(sites); },
      [](Lists& lists) {
        kelvar_2_1_7::join(lists.list, lists.incoming);
        return &lists;
      });
  measure(
      "copy-and-sort", sites, items, [=] { return program(sites).annotated(); },
      [](const SummaryItems& list) {
        SummaryItems copies = copyOf(list);
        copies.sort(kelvar_2_1_7::kSortKind);
        return copies;
      });
}

}  // namespace kelvar_bench
