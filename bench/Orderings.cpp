#include "Orderings.h"

#include <tuple>

namespace kelvar_bench {

namespace {

using kelvar::SummaryItem;

/// The key of a missing detail: last in either direction.
constexpr double kMissing = 2147483647;

template <auto detail, auto value, int sign>
double number(const SummaryItem& item) {
  const auto* record = (item.*detail)();
  return record != nullptr ? sign * static_cast<double>((record->*value)()) : kMissing;
}

double annotationKind(const SummaryItem& item) {
  return item.annotationKind();
}

double kindNumber(const SummaryItem& item) {
  return static_cast<int>(item.detailKind()) * 32 + static_cast<int>(item.annotationKind());
}

double warnings(const SummaryItem& item) {
  const digestio::CorrectnessDetail* record = item.correctnessDetail();
  return record != nullptr ? -static_cast<double>(record->warnings(0) + record->warnings(1)) : kMissing;
}

using digestio::CorrectnessDetail;
using digestio::SuitabilityDetail;
using digestio::SurveyDetail;
using Vectorization = digestio::SurveyVectorizationDetail;
constexpr auto kSurvey = &SummaryItem::surveyDetail;
constexpr auto kVectorization = &SummaryItem::surveyVectorizationDetail;
constexpr auto kSuitability = &SummaryItem::suitabilityDetail;

}  // namespace

const std::array<Ordering, kelvar::kSummaryMappingCount> kOrderings{{
    {kelvar::kSortLocator, "locator", nullptr},
    {kelvar::kSortKind, "kind", kindNumber},
    {kelvar::kSortLabel, "label", nullptr},
    {kelvar::kSortSurveyCpuTime, "survey-cpu-time", number<kSurvey, &SurveyDetail::cpuTime, -1>},
    {kelvar::kSortSurveyPriority, "survey-priority", number<kSurvey, &SurveyDetail::priority, 1>},
    {kelvar::kSortSurveyId, "survey-id", number<kSurvey, &SurveyDetail::id, 1>},
    {kelvar::kSortSurveyVectorizationSelfTime, "survey-vectorization-self-time",
     number<kVectorization, &Vectorization::selfTime, -1>},
    {kelvar::kSortSurveyVectorizationTotalTime, "survey-vectorization-total-time",
     number<kVectorization, &Vectorization::totalTime, -1>},
    {kelvar::kSortSurveyVectorizationPriority, "survey-vectorization-priority",
     number<kVectorization, &Vectorization::priority, -1>},
    {kelvar::kSortSuitabilitySelfTime, "suitability-self-time", number<kSuitability, &SuitabilityDetail::selfTime, -1>},
    {kelvar::kSortSuitabilitySelfMaxGain, "suitability-self-max-gain",
     number<kSuitability, &SuitabilityDetail::siteMaxGain, -1>},
    {kelvar::kSortSuitabilityTotalMaxGain, "suitability-total-max-gain",
     number<kSuitability, &SuitabilityDetail::totalMaxGain, -1>},
    {kelvar::kSortCorrectnessErrors, "dependencies-errors",
     number<&SummaryItem::correctnessDetail, &CorrectnessDetail::errors, -1>},
    {kelvar::kSortCorrectnessWarnings, "dependencies-warnings", warnings},
    {kelvar::kSortGeneralKindLocator, "general-kind-locator", annotationKind},
}};

PlacedItem::PlacedItem(const SummaryItem& of) : line(0), column(0), item(&of) {
  // Texts of paths are never freed.
  const sitenotes::locator_t place = of.locator();
  leaf = place.get_file().get_leaf();
  line = place.get_line();
  column = place.get_column();
  path = place.get_file().get_text();
}

bool operator<(const PlacedItem& a, const PlacedItem& b) {
  return std::tie(a.leaf, a.line, a.column, a.path) < std::tie(b.leaf, b.line, b.column, b.path);
}

}  // namespace kelvar_bench
