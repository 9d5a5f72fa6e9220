#include <utility>

#include "Measure.h"
#include "Program.h"
#include "items/Join.h"

namespace kelvar_bench {

using kelvar_2_1_7::ResultSites;
using kelvar_2_1_7::SummaryItemImpl;
using kelvar_2_1_7::SummaryItems;

namespace {

struct Lists {
  SummaryItems list;
  ResultSites incoming;
};

/// A result that has an item for each site and for nothing else.
Lists listsToJoin(std::size_t sites) {
  Lists lists{program(sites).annotated(), ResultSites(program(sites).collected(digestio::kSuitability))};
  lists.incoming.fold(digestio::kSuitability);
  return lists;
}

SummaryItems copyOf(const SummaryItems& list) {
  SummaryItems copies;
  copies.reserve(list.size());
  for (const auto& item : list) copies.append(SummaryItemImpl::copySummaryItem(*item));
  return copies;
}

}  // namespace

void registerJoin(std::size_t sites) {
  const auto items = [=] { return sites; };
  measure(
      "join", sites, items, [=] { return listsToJoin(sites); },
      [](Lists& lists) {
        kelvar_2_1_7::JoinMemory memory;
        kelvar_2_1_7::join(lists.list, lists.incoming, memory);
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
