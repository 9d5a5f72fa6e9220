#include "view/Orderings.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace kelvar_2_1_7 {

using digestio::CorrectnessDetail;
using digestio::SuitabilityDetail;
using digestio::SurveyDetail;
using digestio::SurveyVectorizationDetail;
using sitenotes::annotation_t;

namespace {

/// Stands in for a missing number where the least stands first: behind all but the largest.
constexpr double kMissingAscending = 2147483647;
/// Where the greatest stands first: -1, which no time, gain or count is, turned around.
constexpr double kMissingDescending = 1;

template <auto detail, auto value>
double ascending(const SummaryItemImpl& item) {
  const auto* const record = (item.*detail)();
  return record != nullptr ? static_cast<double>((record->*value)()) : kMissingAscending;
}

template <auto detail, auto value>
double descending(const SummaryItemImpl& item) {
  const auto* const record = (item.*detail)();
  return record != nullptr ? -static_cast<double>((record->*value)()) : kMissingDescending;
}

constexpr auto kSurvey = &SummaryItemImpl::surveyDetail;
constexpr auto kVectorization = &SummaryItemImpl::surveyVectorizationDetail;
constexpr auto kSuitability = &SummaryItemImpl::suitabilityDetail;
constexpr auto kCorrectness = &SummaryItemImpl::correctnessDetail;

constexpr Number kCpuTime{descending<kSurvey, &SurveyDetail::cpuTime>, digestio::kSurvey};
constexpr Number kPriority{ascending<kSurvey, &SurveyDetail::priority>, digestio::kSurvey};
constexpr Number kId{ascending<kSurvey, &SurveyDetail::id>, digestio::kSurvey};
constexpr Number kLoopSelfTime{descending<kVectorization, &SurveyVectorizationDetail::selfTime>,
                               digestio::kSurveyVectorization};
constexpr Number kLoopTotalTime{descending<kVectorization, &SurveyVectorizationDetail::totalTime>,
                                digestio::kSurveyVectorization};
constexpr Number kLoopPriority{descending<kVectorization, &SurveyVectorizationDetail::priority>,
                               digestio::kSurveyVectorization};
constexpr Number kSelfTime{descending<kSuitability, &SuitabilityDetail::selfTime>, digestio::kSuitability};
constexpr Number kSiteGain{descending<kSuitability, &SuitabilityDetail::siteMaxGain>, digestio::kSuitability};
constexpr Number kTotalGain{descending<kSuitability, &SuitabilityDetail::totalMaxGain>, digestio::kSuitability};
constexpr Number kErrors{descending<kCorrectness, &CorrectnessDetail::errors>, digestio::kCorrectness};

double warnings(const SummaryItemImpl& item) {
  const CorrectnessDetail* const record = item.correctnessDetail();
  if (record == nullptr) return kMissingDescending;
  const std::int64_t first = record->warnings(0);
  const std::int64_t second = record->warnings(1);
  return -static_cast<double>(first + second);
}

/// By detail kind; among annotated sites, whose detail kind is 0, by annotation kind. Exact for whatever the two are.
double kinds(digestio::SummaryDetailKind detail, annotation_t::kind_t annotation) {
  static_assert(digestio::kAnnotatedSite == 0);
  constexpr double kAnnotationKinds = 4294967296;
  if (detail == digestio::kAnnotatedSite) return annotation;
  return static_cast<double>(detail) * kAnnotationKinds;
}

/// A time of loops.
template <const Number& time>
double ofLoop(const SummaryItemImpl& item) {
  return item.detailKind() == digestio::kLoop ? time.read(item) : 0;
}

/// The group of each annotation kind: regions, tasks, critical sections, collection control, data sharing and
/// synchronisation. A team of threads belongs with the regions, though it came last.
constexpr std::array<int, annotation_t::all_kinds> kGeneralKinds{0, 0, 1, 1, 1, 2, 2, 3, 3, 4,
                                                                 4, 4, 4, 5, 5, 5, 5, 5, 0};

double generalKind(digestio::SummaryDetailKind, annotation_t::kind_t annotation) {
  const auto kind = static_cast<std::size_t>(annotation);
  return kind < kGeneralKinds.size() ? kGeneralKinds[kind] : 0;
}

template <auto number>
double ofItem(const SummaryItemImpl& item) {
  return number(item.detailKind(), item.annotationKind());
}

constexpr Number kWarnings{warnings, digestio::kCorrectness};
constexpr Number kKinds{.read = ofItem<kinds>, .ofKinds = kinds};
constexpr Number kSelfTimeIfLoop{ofLoop<kLoopSelfTime>, digestio::kSurveyVectorization, true};
constexpr Number kTotalTimeIfLoop{ofLoop<kLoopTotalTime>, digestio::kSurveyVectorization, true};
constexpr Number kGeneralKind{.read = ofItem<generalKind>, .ofKinds = generalKind};

struct Mapping {
  Ordering ordering;
  const char* displayName;
};

constexpr Mapping kMappings[] = {
    {{.decider = Decider::kPlace}, "sort locator"},
    {{.numbers = {kKinds, kSelfTimeIfLoop, kTotalTimeIfLoop},
      .tie = Tie::kByLocatorUnlessLoop,
      .decider = Decider::kPlaceWithinKinds},
     "sort kind"},
    {{.byLabel = true}, "sort label"},
    {{.numbers = {kCpuTime}}, "sort survey cpu time"},
    {{.numbers = {kPriority}, .decider = Decider::kPlace}, "sort survey priority"},
    {{.numbers = {kId}, .decider = Decider::kPlace}, "sort survey id"},
    {{.numbers = {kLoopSelfTime, kLoopTotalTime}, .tie = Tie::kStays}, "sort suitability self time"},
    {{.numbers = {kLoopTotalTime}, .tie = Tie::kStays}, "sort self max gain"},
    {{.numbers = {kLoopPriority}, .tie = Tie::kStays, .decider = Decider::kPlace}, "sort total max gain"},
    {{.numbers = {kSelfTime}}, "sort dependencies errors"},
    {{.numbers = {kSiteGain}, .decider = Decider::kPlace}, "sort dependencies warnings"},
    {{.numbers = {kTotalGain}, .decider = Decider::kPlace}, "sort general kind locator"},
    {{.numbers = {kErrors, kWarnings}, .decider = Decider::kPlace}, nullptr},
    {{.numbers = {kWarnings}, .decider = Decider::kPlace}, nullptr},
    {{.numbers = {kGeneralKind}, .decider = Decider::kPlaceWithinKinds}, nullptr},
};
static_assert(std::size(kMappings) == kSummaryMappingCount, "one row for each SummaryMapping");
static_assert(std::ranges::all_of(kMappings, [](const Mapping& mapping) { return mapping.ordering.isOfOneAnalysis(); }),
              "items of which the analysis of an ordering's first number says nothing have one standing");

bool before(SummaryMapping mapping, const SummaryItemImpl* a, const SummaryItemImpl* b) {
  return before(kMappings[mapping].ordering, a, b);
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

bool goesByLocator(Tie tie, const SummaryItemImpl& item) noexcept {
  return tie == Tie::kByLocator || (tie == Tie::kByLocatorUnlessLoop && item.detailKind() != digestio::kLoop);
}

Site::Site(const SummaryItemImpl& item)
    : annotationKind(item.annotationKind()), detailKind(item.detailKind()), label(&item.labelText()) {
  if (detailKind != digestio::kLoop) return;
  selfTime = kLoopSelfTime.read(item);
  totalTime = kLoopTotalTime.read(item);
}

bool siteBefore(const Site& a, const Site& b) noexcept {
  if (a.annotationKind == b.annotationKind) return *a.label < *b.label;
  if (a.detailKind != b.detailKind) return a.detailKind < b.detailKind;
  if (a.detailKind == digestio::kAnnotatedSite) return a.annotationKind < b.annotationKind;
  if (a.detailKind != digestio::kLoop) return false;  // nothing else tells two hot spots of one place apart
  const std::partial_ordering order = a.selfTime <=> b.selfTime;
  return std::is_neq(order) ? std::is_lt(order) : a.totalTime < b.totalTime;
}

bool before(const Ordering& ordering, const SummaryItemImpl* a, const SummaryItemImpl* b) {
  if (a == nullptr) return false;
  if (b == nullptr) return true;
  for (const Number& number : ordering.numbers) {
    const double numberOfA = number.read(*a);
    const double numberOfB = number.read(*b);
    const std::partial_ordering order = numberOfA <=> numberOfB;
    if (std::is_neq(order)) return std::is_lt(order);  // a NaN is unordered: neither before nor a tie
  }
  if (ordering.byLabel) {
    const std::strong_ordering order = a->labelText() <=> b->labelText();
    if (std::is_neq(order)) return std::is_lt(order);
  }
  if (!goesByLocator(ordering.tie, *a)) return false;
  const int order = a->place().display_order(b->place());
  return order != 0 ? order < 0 : siteBefore(Site(*a), Site(*b));
}

bool SummaryItemImpl::compareLocator(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortLocator, a, b);
}
bool SummaryItemImpl::compareKind(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortKind, a, b);
}
bool SummaryItemImpl::compareLabel(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortLabel, a, b);
}
bool SummaryItemImpl::compareSurveyCpuTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSurveyCpuTime, a, b);
}
bool SummaryItemImpl::compareSurveyPriority(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSurveyPriority, a, b);
}
bool SummaryItemImpl::compareSurveyId(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSurveyId, a, b);
}
bool SummaryItemImpl::compareSurveyVectorizationSelfTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSurveyVectorizationSelfTime, a, b);
}
bool SummaryItemImpl::compareSurveyVectorizationTotalTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSurveyVectorizationTotalTime, a, b);
}
bool SummaryItemImpl::compareSurveyVectorizationPriority(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSurveyVectorizationPriority, a, b);
}
bool SummaryItemImpl::compareSuitabilitySelfTime(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSuitabilitySelfTime, a, b);
}
bool SummaryItemImpl::compareSuitabilitySelfMaxGain(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSuitabilitySelfMaxGain, a, b);
}
bool SummaryItemImpl::compareSortSuitabilityTotalMaxGain(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortSuitabilityTotalMaxGain, a, b);
}
bool SummaryItemImpl::compareCorrectnessErrors(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortCorrectnessErrors, a, b);
}
bool SummaryItemImpl::compareCorrectnessWarnings(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortCorrectnessWarnings, a, b);
}
bool SummaryItemImpl::compareGeneralKindLocator(SummaryItemImpl* a, SummaryItemImpl* b) {
  return before(kSortGeneralKindLocator, a, b);
}

}  // namespace kelvar_2_1_7
