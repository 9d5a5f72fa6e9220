#include "TimeSource.h"

#include <charconv>
#include <fstream>
#include <string_view>

#include "Outcome.h"
#include "kinds.h"

namespace kelvar_tool {

namespace {

constexpr std::string_view kImported = "imported by kelvar as ";
constexpr std::string_view kFrom = " from --";
constexpr std::string_view kTimes = "times are in ";
constexpr std::string_view kPlaceless = kelvar_readers::kPlacelessRemark;
constexpr std::string_view kIn = ", in ";
constexpr std::size_t kMostLines = 20;  // the import writes these lines first

std::string wordBefore(std::string_view text, char end) {
  return std::string(text.substr(0, text.find(end)));
}

/// What the log of an imported result says.
struct Noted {
  std::string tool;
  std::string unit;
  double placeless = 0;
};

Noted notedIn(const std::string& result) {
  Noted noted;
  std::ifstream in(result.empty() ? result : result + "/collector.log");
  std::string line;
  for (std::size_t number = 0; number < kMostLines && std::getline(in, line); ++number) {
    const std::string_view text = line;
    const std::size_t from = text.find(kFrom);
    const std::size_t weight = text.find(kPlaceless);
    if (text.starts_with(kImported) && from != std::string_view::npos) {
      noted.tool = wordBefore(text.substr(from + kFrom.size()), ' ');
    } else if (text.starts_with(kTimes)) {
      noted.unit = wordBefore(text.substr(kTimes.size()), ',');
    } else if (weight != std::string_view::npos) {
      const std::string_view digits = text.substr(weight + kPlaceless.size());
      std::from_chars(digits.data(), digits.data() + digits.size(), noted.placeless);
    }
  }
  return noted;
}

std::string sourceOf(const Pieces& pieces, digestio::SummaryDataKind kind) {
  const Noted noted = notedIn(pieces.results[kind]);
  return noted.unit.empty() || noted.tool.empty() ? noted.tool : noted.tool + std::string(kIn) + noted.unit;
}

}  // namespace

std::string timeSourceOf(const Pieces& pieces) {
  const auto kind = pieces.results[digestio::kSurvey].empty() ? digestio::kSuitability : digestio::kSurvey;
  return sourceOf(pieces, kind);
}

double placelessTimeOf(const Pieces& pieces) {
  return notedIn(pieces.results[digestio::kSurvey]).placeless;
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
