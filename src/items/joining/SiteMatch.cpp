#include "items/joining/SiteMatch.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "declarations.h"

namespace kelvar_2_1_7 {

namespace {

/// Without a shared handle, only annotated sites of the same kind can be one site.
bool haveSameKind(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return a.detailKind() == kSiteDetail && b.detailKind() == kSiteDetail && a.annotationKind() == b.annotationKind();
}

/// Whether the leaf names of two places' files are the same bytes. The sources may be elsewhere by now, so directories
/// do not count.
bool haveSameLeaf(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  return withLeaf(
      a, [&](std::string_view leaf) { return withLeaf(b, [&](std::string_view other) { return leaf == other; }); });
}

/// Whether an analysis that lists each site once has a detail for both: then they are two sites. Vectorization data may
/// come twice for one site, once for each version of a loop, so it is not compared.
bool oneAnalysisHasBoth(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  constexpr std::array kExclusiveKinds{kSurveyKind, kSuitabilityKind, kCorrectnessKind, kMapKind};
  return std::any_of(kExclusiveKinds.begin(), kExclusiveKinds.end(),
                     [&](digestio::SummaryDataKind kind) { return a.shows(kind) && b.shows(kind); });
}

}  // namespace

bool isOneSiteOfResult(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return haveSameKind(a, b) && haveSameLeaf(a.place(), b.place()) && !oneAnalysisHasBoth(a, b);
}

bool isOneJoinedSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return haveSameKind(a, b) && a.labelText() == b.labelText() &&
         (a.place().is_null() != b.place().is_null() || haveSameLeaf(a.place(), b.place())) &&
         !oneAnalysisHasBoth(a, b);
}

}  // namespace kelvar_2_1_7
