#include "view/ordering/Orderings.h"

#include <compare>
#include <cstdint>
#include <iterator>
#include <string>

#include "declarations.h"

namespace kelvar_2_1_7 {

using digestio::CorrectnessDetail;
using digestio::SuitabilityDetail;
using digestio::SurveyDetail;
using digestio::SurveyVectorizationDetail;
using sitenotes::annotation_t;

namespace {

/// Replaces a missing value where the least comes first: behind all but the largest.
constexpr double kMissingAscending = 2147483647;
/// Where the greatest comes first: -1, negated as all keys are there. No time, gain or count is less than 0.
constexpr double kMissingDescending = 1;

template <auto detail, auto value>
double ascending(const SummaryItemImpl& item) {
  auto* const record = (item.*detail)();
  return record != nullptr ? static_cast<double>((record->*value)()) : kMissingAscending;
}

template <auto detail, auto value>
double descending(const SummaryItemImpl& item) {
  auto* const record = (item.*detail)();
  return record != nullptr ? -static_cast<double>((record->*value)()) : kMissingDescending;
}

constexpr auto kSurvey = &SummaryItemImpl::surveyDetail;
constexpr auto kVectorization = &SummaryItemImpl::surveyVectorizationDetail;
constexpr auto kSuitability = &SummaryItemImpl::suitabilityDetail;
constexpr auto kCorrectness = &SummaryItemImpl::correctnessDetail;

constexpr SortKey kCpuTime{descending<kSurvey, &SurveyDetail::cpuTime>, kSurveyKind};
constexpr SortKey kPriority{ascending<kSurvey, &SurveyDetail::priority>, kSurveyKind};
constexpr SortKey kId{ascending<kSurvey, &SurveyDetail::id>, kSurveyKind};
constexpr SortKey kLoopSelfTime{descending<kVectorization, &SurveyVectorizationDetail::selfTime>, kVectorizationKind};
constexpr SortKey kLoopTotalTime{descending<kVectorization, &SurveyVectorizationDetail::totalTime>, kVectorizationKind};
constexpr SortKey kLoopPriority{descending<kVectorization, &SurveyVectorizationDetail::priority>, kVectorizationKind};
constexpr SortKey kSelfTime{descending<kSuitability, &SuitabilityDetail::selfTime>, kSuitabilityKind};
constexpr SortKey kSiteGain{descending<kSuitability, &SuitabilityDetail::siteMaxGain>, kSuitabilityKind};
constexpr SortKey kTotalGain{descending<kSuitability, &SuitabilityDetail::totalMaxGain>, kSuitabilityKind};
constexpr SortKey kErrors{descending<kCorrectness, &CorrectnessDetail::errors>, kCorrectnessKind};

double warnings(const SummaryItemImpl& item) {
  CorrectnessDetail* const record = item.correctnessDetail();
  if (record == nullptr) return kMissingDescending;
  const std::int64_t first = record->warnings(0);
  const std::int64_t second = record->warnings(1);
  return -static_cast<double>(first + second);
}

/// By detail kind; among annotated sites, whose detail kind is 0, by annotation kind. Exact for any two values.
double kinds(const SummaryItemImpl& item) {
  static_assert(static_cast<int>(kSiteDetail) == 0);
  constexpr double kAnnotationKinds = 4294967296;
  if (item.detailKind() == kSiteDetail) return static_cast<double>(item.annotationKind());
  return static_cast<double>(item.detailKind()) * kAnnotationKinds;
}

/// A time of loops; all others have the same.
template <const SortKey& time>
double ofLoop(const SummaryItemImpl& item) {
  return item.detailKind() == kLoopDetail ? time.read(item) : 0;
}

/// The group of each annotation kind: regions, tasks, critical sections, collection control, data sharing and
/// synchronisation. A team of threads belongs with the regions, though it came last.
constexpr std::array<int, kAnnotationKindCount> kGeneralKinds{0, 0, 1, 1, 1, 2, 2, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 5, 0};

double generalKind(const SummaryItemImpl& item) {
  const auto kind = static_cast<std::size_t>(item.annotationKind());
  return kind < kGeneralKinds.size() ? kGeneralKinds[kind] : 0;
}

constexpr SortKey kWarnings{warnings, kCorrectnessKind};
constexpr SortKey kKinds{.read = kinds};
constexpr SortKey kSelfTimeIfLoop{ofLoop<kLoopSelfTime>, kVectorizationKind};
constexpr SortKey kTotalTimeIfLoop{ofLoop<kLoopTotalTime>, kVectorizationKind};
constexpr SortKey kGeneralKind{.read = generalKind};

struct Mapping {
  Ordering ordering;
  const char* displayName;
};

// By SummaryMapping. From the vectorization orderings on the names are wrong: see displayName().
constexpr Mapping kMappings[] = {
    {{}, "sort locator"},
    {{.keys = {kKinds, kSelfTimeIfLoop, kTotalTimeIfLoop}, .thenByLocator = ThenByLocator::kUnlessLoop}, "sort kind"},
    {{.byLabel = true}, "sort label"},
    {{.keys = {kCpuTime}}, "sort survey cpu time"},
    {{.keys = {kPriority}}, "sort survey priority"},
    {{.keys = {kId}}, "sort survey id"},
    {{.keys = {kLoopSelfTime, kLoopTotalTime}, .thenByLocator = ThenByLocator::kNo}, "sort suitability self time"},
    {{.keys = {kLoopTotalTime}, .thenByLocator = ThenByLocator::kNo}, "sort self max gain"},
    {{.keys = {kLoopPriority}, .thenByLocator = ThenByLocator::kNo}, "sort total max gain"},
    {{.keys = {kSelfTime}}, "sort dependencies errors"},
    {{.keys = {kSiteGain}}, "sort dependencies warnings"},
    {{.keys = {kTotalGain}}, "sort general kind locator"},
    {{.keys = {kErrors, kWarnings}}, nullptr},
    {{.keys = {kWarnings}}, nullptr},
    {{.keys = {kGeneralKind}}, nullptr},
};
static_assert(std::size(kMappings) == kSummaryMappingCount, "one row for each SummaryMapping");

bool isBefore(SummaryMapping mapping, const SummaryItemImpl* a, const SummaryItemImpl* b) {
  return isBefore(kMappings[mapping].ordering, a, b);
}

}  // namespace

const Ordering& orderingOf(SummaryMapping mapping) noexcept {
  const auto index = static_cast<std::size_t>(mapping);
  return kMappings[index < std::size(kMappings) ? index : std::size_t{kSortLocator}].ordering;
}

const char* displayName(SummaryMapping mapping) noexcept {
  const auto index = static_cast<std::size_t>(mapping);
  const char* const name = index < std::size(kMappings) ? kMappings[index].displayName : nullptr;
  return name != nullptr ? name : "";
}

bool goesByLocator(ThenByLocator thenByLocator, const SummaryItemImpl& item) {
  if (thenByLocator == ThenByLocator::kUnlessLoop) return item.detailKind() != kLoopDetail;
  return thenByLocator == ThenByLocator::kYes;
}

SiteKey::SiteKey(const SummaryItemImpl& item, bool withTimes)
    : annotationKind(item.annotationKind()), detailKind(item.detailKind()), label(&item.labelText()) {
  if (!withTimes || detailKind != kLoopDetail) return;
  selfTime = kLoopSelfTime.read(item);
  totalTime = kLoopTotalTime.read(item);
}

bool isBeforeAtPlace(const SiteKey& a, const SiteKey& b) noexcept {
  if (a.annotationKind == b.annotationKind) return *a.label < *b.label;
  if (a.detailKind != b.detailKind) return a.detailKind < b.detailKind;
  if (a.detailKind == kSiteDetail) return a.annotationKind < b.annotationKind;
  if (a.detailKind != kLoopDetail) return false;  // nothing else tells two hot spots at one place apart
  const std::partial_ordering order = a.selfTime <=> b.selfTime;
  return std::is_neq(order) ? std::is_lt(order) : a.totalTime < b.totalTime;
}

bool isBefore(const Ordering& ordering, const SummaryItemImpl* a, const SummaryItemImpl* b) {
  if (a == nullptr) return false;
  if (b == nullptr) return true;
  for (const SortKey& key : ordering.keys) {
    const double keyOfA = key.read(*a);
    const double keyOfB = key.read(*b);
    const std::partial_ordering order = keyOfA <=> keyOfB;
    if (std::is_neq(order)) return std::is_lt(order);  // a NaN is unordered: neither before nor a tie
  }
  if (ordering.byLabel) {
    const std::strong_ordering order = a->labelText() <=> b->labelText();
    if (std::is_neq(order)) return std::is_lt(order);
  }
  if (!goesByLocator(ordering.thenByLocator, *a)) return false;
  const int order = displayOrder(a->place(), b->place());
  if (order != 0) return order < 0;
  const bool withTimes = a->annotationKind() != b->annotationKind();
  return isBeforeAtPlace(SiteKey(*a, withTimes), SiteKey(*b, withTimes));
}

bool SummaryItemImpl::compareLocator(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortLocator, a, b);
}
bool SummaryItemImpl::compareKind(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortKind, a, b);
}
bool SummaryItemImpl::compareLabel(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortLabel, a, b);
}
bool SummaryItemImpl::compareSurveyCpuTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSurveyCpuTime, a, b);
}
bool SummaryItemImpl::compareSurveyPriority(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSurveyPriority, a, b);
}
bool SummaryItemImpl::compareSurveyId(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSurveyId, a, b);
}
bool SummaryItemImpl::compareSurveyVectorizationSelfTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSurveyVectorizationSelfTime, a, b);
}
bool SummaryItemImpl::compareSurveyVectorizationTotalTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSurveyVectorizationTotalTime, a, b);
}
bool SummaryItemImpl::compareSurveyVectorizationPriority(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSurveyVectorizationPriority, a, b);
}
bool SummaryItemImpl::compareSuitabilitySelfTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSuitabilitySelfTime, a, b);
}
bool SummaryItemImpl::compareSuitabilitySelfMaxGain(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSuitabilitySelfMaxGain, a, b);
}
bool SummaryItemImpl::compareSortSuitabilityTotalMaxGain(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortSuitabilityTotalMaxGain, a, b);
}
bool SummaryItemImpl::compareCorrectnessErrors(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortCorrectnessErrors, a, b);
}
bool SummaryItemImpl::compareCorrectnessWarnings(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortCorrectnessWarnings, a, b);
}
bool SummaryItemImpl::compareGeneralKindLocator(SummaryItemImpl* a, SummaryItemImpl* b) {
  return isBefore(kSortGeneralKindLocator, a, b);
}

}  // namespace kelvar_2_1_7
