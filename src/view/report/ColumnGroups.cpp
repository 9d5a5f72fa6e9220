#include "view/report/ColumnGroups.h"

#include <cstdint>

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;

namespace {

bool putSurvey(RowText& row, const SummaryItemImpl& item) {
  auto* const detail = item.surveyDetail();
  if (detail == nullptr) return false;
  const double cpuTime = detail->cpuTime();
  const int priority = detail->priority();
  const int id = detail->id();
  row.fixed(cpuTime, 7).text(" ").integer(priority, 1).text(" ").integer(id, 2).text(" ");
  return true;
}

bool putSurveyVectorization(RowText& row, const SummaryItemImpl& item) {
  auto* const detail = item.surveyVectorizationDetail();
  if (detail == nullptr) return false;
  const int state = detail->state();
  const double selfTime = detail->selfTime();
  const double totalTime = detail->totalTime();
  const int id = detail->id();
  const int priority = detail->priority();
  row.integer(state, 1).text(" ").fixed(selfTime, 7).text(" ").fixed(totalTime, 7).text(" ");
  row.integer(id, 6).text(" ").integer(priority, 1).text(" ");
  return true;
}

/// The letters that bits 0 to 4 of the flags have under "STCLC": unset, set.
constexpr std::array<std::array<char, 2>, 5> kFlagLetters{{{'l', 'h'}, {'l', 'h'}, {'n', 'c'}, {'l', 'h'}, {'l', 'h'}}};

using FlagLetters = std::array<char, kFlagLetters.size()>;

FlagLetters lettersOf(std::uint32_t flags) {
  FlagLetters letters;
  for (std::size_t bit = 0; bit < letters.size(); ++bit) letters[bit] = kFlagLetters[bit][flags >> bit & 1];
  return letters;
}

bool putSuitability(RowText& row, const SummaryItemImpl& item) {
  auto* const detail = item.suitabilityDetail();
  if (detail == nullptr) return false;
  const double selfTime = detail->selfTime();
  // Gains are modelled for parallel regions as a whole.
  if (item.annotationKind() != kParallelAnnotation) {
    row.fixed(selfTime, 6).text("s                          ");
    return true;
  }
  const int cores = detail->cores();
  const std::uint32_t flags = detail->flags();
  const double siteMaxGain = detail->siteMaxGain();
  const double totalMaxGain = detail->totalMaxGain();
  const FlagLetters letters = lettersOf(flags);
  row.fixed(selfTime, 6).text("s ").integer(cores, 2).text(" ").text({letters.data(), letters.size()}).text(" ");
  row.fixed(siteMaxGain, 7).text(" ").fixed(totalMaxGain, 7).text(" ");
  return true;
}

bool putCorrectness(RowText& row, const SummaryItemImpl& item) {
  auto* const detail = item.correctnessDetail();
  if (detail == nullptr) return false;
  const long errors = detail->errors();
  const long first = detail->warnings(0);
  const long second = detail->warnings(1);
  row.integer(errors, 7).text(" ").integer(first + second, 7).text(" ");
  return true;
}

bool putMap(RowText& row, const SummaryItemImpl& item) {
  auto* const detail = item.mapDetail();
  if (detail == nullptr) return false;
  const long unit = detail->strides(0);
  const long constant = detail->strides(1);
  const long varying = detail->strides(2);
  row.integer(unit, 7).text(" / ").integer(constant, 7).text(" / ").integer(varying, 7).text(" ");
  return true;
}

constexpr PerKind<ColumnGroup> kGroups{{{
    {{"Survey      ", " CPU    P   ", " Time   r Id", "_______ _ __"}, 13, putSurvey},
    {{"SurveyVectorization      ", " Self   Total    P   ", " Time   Time Id r", "_______ _______ ______ _"},
     20,
     putSurveyVectorization},
    {{"         Suitability            ", " Self   Cores /   Site    Total ", " Time      STCLC MaxGain MaxGain",
      "_______ __ _____ _______ _______"},
     33,
     putSuitability},
    {{"  Dependencies  ", "               ", "Errors  Warning", "_______ _______"}, 16, putCorrectness},
    {{"  MAP           ", "               ", "Strides", "_______"}, 16, putMap},
}}};

constexpr bool hasWidths(SummaryDataKind kind, const std::array<std::size_t, kHeaderLines>& widths) {
  for (std::size_t line = 0; line < kHeaderLines; ++line) {
    if (kGroups[kind].header[line].size() != widths[line]) return false;
  }
  return true;
}
static_assert(hasWidths(kSurveyKind, {12, 12, 12, 12}));
static_assert(hasWidths(kVectorizationKind, {25, 21, 17, 24}));
static_assert(hasWidths(kSuitabilityKind, {32, 32, 32, 32}));
static_assert(hasWidths(kCorrectnessKind, {16, 15, 15, 15}));
static_assert(hasWidths(kMapKind, {16, 15, 7, 7}));

}  // namespace

const PerKind<ColumnGroup> kColumnGroups = kGroups;

}  // namespace kelvar_2_1_7
