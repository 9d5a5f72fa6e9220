#include "LabelTwins.h"
#include "SiteMatch.h"
#include "SummaryItems.h"

namespace kelvar_2_1_7 {

namespace {

/// Whether two neighbours of one result stand for one site.
bool sameSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return sameSortOfSite(a, b) && sameLeaf(a, b) && !seenApart(a, b);
}

}  // namespace

void SummaryItems::exactMerge(digestio::SummaryDataKind kind) {
  sort(kind == digestio::kSurveyVectorization ? kSortSurveyVectorizationSelfTime : kSortLocator);
  const auto isNew = [](std::size_t) { return true; };
  foldNeighbours(*this, isNew, sameSite, [this](value_type& into, value_type& from) {
    own(into).merge(*from);
    from.reset();
  });
  foldLabelTwins(*this);
}

}  // namespace kelvar_2_1_7
