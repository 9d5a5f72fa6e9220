#include "SiteMatch.h"

#include <algorithm>
#include <array>

namespace kelvar_2_1_7 {

namespace {

template <auto detail>
bool bothHave(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return (a.*detail)() != nullptr && (b.*detail)() != nullptr;
}

// Vectorization data may come twice for one site, once for each version of a loop: it is not asked.
constexpr std::array kExclusive{
    bothHave<&SummaryItemImpl::surveyDetail>,
    bothHave<&SummaryItemImpl::suitabilityDetail>,
    bothHave<&SummaryItemImpl::correctnessDetail>,
    bothHave<&SummaryItemImpl::mapDetail>,
};

}  // namespace

bool sameLeaf(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  const auto& ours = a.place().get_file().get_leaf();
  const auto& theirs = b.place().get_file().get_leaf();
  return ours == theirs;
}

bool sameSortOfSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return a.detailKind() == digestio::kAnnotatedSite && b.detailKind() == digestio::kAnnotatedSite &&
         a.annotationKind() == b.annotationKind();
}

bool seenApart(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return std::any_of(kExclusive.begin(), kExclusive.end(), [&](auto both) { return both(a, b); });
}

}  // namespace kelvar_2_1_7
