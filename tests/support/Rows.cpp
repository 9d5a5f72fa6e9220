#include "support/Rows.h"

#include <array>
#include <cstdio>

#include "PerKind.h"

namespace support {

using kelvar_2_1_7::kAllKinds;
using kelvar_2_1_7::PerKind;
using kelvar_2_1_7::SummaryItem;

namespace {

constexpr PerKind<const char*> kNames{{"survey", "vectorization", "suitability", "correctness", "map"}};
constexpr std::array kSigns{'.', '!', '-', '~', '=', '+'};

std::string number(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

std::string survey(const SummaryItem& item) {
  const auto* detail = item.surveyDetail();
  return detail == nullptr ? "" : ' ' + number(detail->cpuTime());
}

std::string vectorization(const SummaryItem& item) {
  const auto* detail = item.surveyVectorizationDetail();
  return detail == nullptr ? "" : ' ' + number(detail->selfTime()) + '/' + number(detail->totalTime());
}

std::string suitability(const SummaryItem& item) {
  const auto* detail = item.suitabilityDetail();
  if (detail == nullptr) return "";
  return ' ' + number(detail->selfTime()) + ' ' + number(detail->siteMaxGain()) + ' ' + number(detail->totalMaxGain());
}

std::string correctness(const SummaryItem& item) {
  const auto* detail = item.correctnessDetail();
  if (detail == nullptr) return "";
  return ' ' + std::to_string(detail->errors()) + ' ' + std::to_string(detail->warnings(0)) + '+' +
         std::to_string(detail->warnings(1));
}

std::string map(const SummaryItem& item) {
  const auto* detail = item.mapDetail();
  if (detail == nullptr) return "";
  return ' ' + std::to_string(detail->strides(0)) + '+' + std::to_string(detail->strides(1)) + '+' +
         std::to_string(detail->strides(2));
}

constexpr PerKind<std::string (*)(const SummaryItem&)> kValues{{survey, vectorization, suitability, correctness, map}};

std::string place(const sitenotes::locator_t& locator) {
  if (locator.is_null()) return "nowhere";
  std::string text = locator.get_file().get_text() + ':' + std::to_string(locator.get_line());
  if (locator.get_column() != 0) text += ':' + std::to_string(locator.get_column());
  return text;
}

std::string record(const SummaryItem& item, digestio::SummaryDataKind kind) {
  const auto status = item.summaryDataStatus(kind);
  const unsigned int count = item.summaryDataCount(kind);
  if (status == kelvar_2_1_7::kNotPresent && count == 0 && item.summaryDetail(kind) == nullptr) return "";
  std::string text = std::string(" | ") + kNames[kind] + ' ' + kSigns.at(static_cast<std::size_t>(status));
  if (count != 1) text += " x" + std::to_string(count);
  return text + kValues[kind](item);
}

}  // namespace

std::string row(const SummaryItem& item) {
  std::string text{kSigns.at(static_cast<std::size_t>(item.summaryDataStatus())), ' '};
  text += item.label() + ' ' + place(item.locator());
  const auto annotationKind = item.annotationKind();
  if (annotationKind != 0) text += std::string(" ") + sitenotes::annotation_t::display(annotationKind);
  if (item.detailKind() == digestio::kHotSpot) text += ", hot spot";
  if (item.detailKind() == digestio::kLoop) text += ", loop";
  if (item.isSelected()) text += ", selected";
  for (const auto kind : kAllKinds) text += record(item, kind);
  return text;
}

std::string rows(kelvar_2_1_7::SummaryData& data) {
  std::string text;
  const int count = data.num_items();
  for (int index = 0; index < count; ++index) text += row(*data.item(index)) + '\n';
  return text;
}

}  // namespace support
