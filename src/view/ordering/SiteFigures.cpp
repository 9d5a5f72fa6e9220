#include "view/ordering/SiteFigures.h"

#include <concepts>
#include <limits>

#include "view/ordering/KeySort.h"

namespace kelvar_2_1_7 {

using digestio::CorrectnessDetail;
using digestio::MapDetail;
using digestio::SuitabilityDetail;
using digestio::SummaryDataKind;
using digestio::SurveyDetail;
using digestio::SurveyVectorizationDetail;

namespace {

using Figure = std::uint64_t (*)(const SummaryItemImpl& item);

constexpr std::uint64_t kMissing = 0;

std::uint64_t ordered(double value) {
  return orderedBits(value);
}

std::uint64_t ordered(std::integral auto value) {
  constexpr auto kLeast = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::min());
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(value)) - kLeast;
}

template <auto detail, auto value, int... index>
std::uint64_t figure(const SummaryItemImpl& item) {
  auto* const record = (item.*detail)();
  return record != nullptr ? ordered((record->*value)(index...)) : kMissing;
}

template <auto value>
constexpr Figure kSurveyFigure = figure<&SummaryItemImpl::surveyDetail, value>;
template <auto value>
constexpr Figure kVectorizationFigure = figure<&SummaryItemImpl::surveyVectorizationDetail, value>;
template <auto value>
constexpr Figure kSuitabilityFigure = figure<&SummaryItemImpl::suitabilityDetail, value>;
template <auto value, int... index>
constexpr Figure kCorrectnessFigure = figure<&SummaryItemImpl::correctnessDetail, value, index...>;
template <int index>
constexpr Figure kStrides = figure<&SummaryItemImpl::mapDetail, &MapDetail::strides, index>;

std::uint64_t status(const SummaryItemImpl& item) {
  return static_cast<std::uint64_t>(item.summaryDataStatus());
}

/// How an analysis relates to the item: its status, then its count, then whether it has a detail to show.
template <SummaryDataKind kind>
std::uint64_t record(const SummaryItemImpl& item) {
  const auto kindStatus = static_cast<std::uint64_t>(item.summaryDataStatus(kind));
  const std::uint64_t shown = item.shows(kind) ? 1 : 0;
  return kindStatus << 33 | std::uint64_t{item.summaryDataCount(kind)} << 1 | shown;
}

constexpr Figure kFigures[] = {
    status,
    record<kSurveyKind>,
    kSurveyFigure<&SurveyDetail::cpuTime>,
    kSurveyFigure<&SurveyDetail::priority>,
    kSurveyFigure<&SurveyDetail::id>,
    record<kVectorizationKind>,
    kVectorizationFigure<&SurveyVectorizationDetail::selfTime>,
    kVectorizationFigure<&SurveyVectorizationDetail::totalTime>,
    kVectorizationFigure<&SurveyVectorizationDetail::state>,
    kVectorizationFigure<&SurveyVectorizationDetail::id>,
    kVectorizationFigure<&SurveyVectorizationDetail::priority>,
    record<kSuitabilityKind>,
    kSuitabilityFigure<&SuitabilityDetail::selfTime>,
    kSuitabilityFigure<&SuitabilityDetail::siteMaxGain>,
    kSuitabilityFigure<&SuitabilityDetail::totalMaxGain>,
    kSuitabilityFigure<&SuitabilityDetail::cores>,
    kSuitabilityFigure<&SuitabilityDetail::flags>,
    record<kCorrectnessKind>,
    kCorrectnessFigure<&CorrectnessDetail::errors>,
    kCorrectnessFigure<&CorrectnessDetail::warnings, 0>,
    kCorrectnessFigure<&CorrectnessDetail::warnings, 1>,
    record<kMapKind>,
    kStrides<0>,
    kStrides<1>,
    kStrides<2>,
};

}  // namespace

std::vector<std::uint64_t> figuresOf(const SummaryItemImpl& item) {
  std::vector<std::uint64_t> figures;
  figures.reserve(std::size(kFigures));
  for (const Figure figure : kFigures) figures.push_back(figure(item));
  return figures;
}

}  // namespace kelvar_2_1_7
