#include "TimeSource.h"

#include <fstream>
#include <string_view>

#include "kinds.h"

namespace kelvar_tool {

namespace {

constexpr std::string_view kImported = "imported by kelvar as ";
constexpr std::string_view kFrom = " from --";
constexpr std::string_view kTimes = "times are in ";
constexpr std::string_view kIn = ", in ";
constexpr std::size_t kMostLines = 20;  // the import says it first

std::string wordBefore(std::string_view text, char end) {
  return std::string(text.substr(0, text.find(end)));
}

std::string sourceIn(const std::string& log) {
  std::ifstream in(log);
  std::string tool;
  std::string unit;
  std::string line;
  for (std::size_t number = 0; number < kMostLines && std::getline(in, line); ++number) {
    const std::string_view text = line;
    const std::size_t from = text.find(kFrom);
    if (text.starts_with(kImported) && from != std::string_view::npos) {
      tool = wordBefore(text.substr(from + kFrom.size()), ' ');
    } else if (text.starts_with(kTimes)) {
      unit = wordBefore(text.substr(kTimes.size()), ',');
    }
  }
  return unit.empty() || tool.empty() ? tool : tool + std::string(kIn) + unit;
}

std::string sourceOf(const Pieces& pieces, digestio::SummaryDataKind kind) {
  const std::string& result = pieces.results[kind];
  return result.empty() ? result : sourceIn(result + "/collector.log");
}

}  // namespace

std::string timeSourceOf(const Pieces& pieces) {
  const auto kind = pieces.results[digestio::kSurvey].empty() ? digestio::kSuitability : digestio::kSurvey;
  return sourceOf(pieces, kind);
}

kelvar_page::TimeUnit unitOf(const std::string& timeSource) {
  const std::size_t in = timeSource.find(kIn);
  if (in == std::string::npos) return {};
  return kelvar_page::TimeUnit(std::string_view(timeSource).substr(in + kIn.size()));
}

kelvar_page::TimeUnits unitsOf(const Pieces& pieces) {
  const kelvar_page::TimeUnit survey = unitOf(sourceOf(pieces, digestio::kSurvey));
  const std::string suitability = sourceOf(pieces, digestio::kSuitability);
  return {.survey = survey, .suitability = suitability == "model" ? survey : unitOf(suitability)};
}

}  // namespace kelvar_tool
