#include "SiteMatch.h"

#include <algorithm>
#include <array>

namespace kelvar_2_1_7 {

namespace {

// Two items that both hold one of these are two sites. Vectorization data may come twice for one site, once for each
// version of a loop: it is not asked.
constexpr std::array kExclusiveKinds{digestio::kSurvey, digestio::kSuitability, digestio::kCorrectness, digestio::kMap};

}  // namespace

bool sameLeaf(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  // A suite's own locator may hand out its file, and a file its leaf, by value.
  const toolbelt::path_t ours = a.get_file();
  const toolbelt::path_t theirs = b.get_file();
  return ours.get_leaf() == theirs.get_leaf();
}

bool mayMatch(const SummaryItemImpl& item) noexcept {
  return item.hasAnnotation() || item.detailKind() == digestio::kAnnotatedSite;
}

bool sameSortOfSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return a.detailKind() == digestio::kAnnotatedSite && b.detailKind() == digestio::kAnnotatedSite &&
         a.annotationKind() == b.annotationKind();
}

bool seenApart(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  // Few have two details of a kind to ask.
  return std::any_of(kExclusiveKinds.begin(), kExclusiveKinds.end(), [&](digestio::SummaryDataKind kind) {
    return a.summaryDetail(kind) != nullptr && b.summaryDetail(kind) != nullptr && a.shows(kind) && b.shows(kind);
  });
}

}  // namespace kelvar_2_1_7
