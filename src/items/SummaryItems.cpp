#include "items/SummaryItems.h"

#include "items/joining/FoldLabelTwins.h"
#include "items/joining/FoldNeighbours.h"
#include "items/joining/SiteMatch.h"

namespace kelvar_2_1_7 {

void SummaryItems::reorder(const std::vector<SummaryItemImpl*>& order) noexcept {
  for (value_type& entry : items_) static_cast<void>(entry.release());  // each item gets a new owner below
  for (std::size_t index = 0; index < order.size(); ++index) items_[index].reset(order[index]);
}

void SummaryItems::exactMerge(digestio::SummaryDataKind kind) {
  sort(kind == kVectorizationKind ? kSortSurveyVectorizationSelfTime : kSortLocator);
  foldNeighbours(*this, isOneSiteOfResult);
  foldLabelTwins(*this);
}

}  // namespace kelvar_2_1_7
