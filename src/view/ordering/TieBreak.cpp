#include "view/ordering/TieBreak.h"

#include <compare>
#include <cstdint>
#include <vector>

#include "items/Groups.h"
#include "view/ordering/MergeSort.h"
#include "view/ordering/SiteFigures.h"

namespace kelvar_2_1_7 {

namespace {

std::strong_ordering compareIdentity(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  if (const auto order = a.annotationKind() <=> b.annotationKind(); std::is_neq(order)) return order;
  if (const auto order = a.detailKind() <=> b.detailKind(); std::is_neq(order)) return order;
  if (const auto order = a.labelText() <=> b.labelText(); std::is_neq(order)) return order;
  return a.handle() <=> b.handle();
}

struct ItemFigures {
  std::vector<std::uint64_t> figures;
  SummaryItemImpl* item;
};

/// Asks each item for its figures once.
void sortByFigures(std::span<SummaryItemImpl*> items) {
  std::vector<ItemFigures> records;
  std::vector<ItemFigures> buffer;
  records.reserve(items.size());
  for (SummaryItemImpl* const item : items) records.push_back({figuresOf(*item), item});
  mergeSort(std::span(records), buffer,
            [](const ItemFigures& a, const ItemFigures& b) { return a.figures < b.figures; });
  for (std::size_t i = 0; i < items.size(); ++i) items[i] = records[i].item;
}

}  // namespace

void breakTies(std::span<SummaryItemImpl*> atOnePlace) {
  std::vector<SummaryItemImpl*> buffer;
  mergeSort(atOnePlace, buffer,
            [](const SummaryItemImpl* a, const SummaryItemImpl* b) { return std::is_lt(compareIdentity(*a, *b)); });
  const auto areAlike = [](const SummaryItemImpl* a, const SummaryItemImpl* b) {
    return std::is_eq(compareIdentity(*a, *b));
  };
  forEachGroup(atOnePlace, areAlike, sortByFigures);
}

}  // namespace kelvar_2_1_7
