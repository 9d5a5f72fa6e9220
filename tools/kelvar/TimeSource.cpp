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

}  // namespace

std::string timeSourceOf(const Pieces& pieces) {
  for (const digestio::SummaryDataKind kind : {digestio::kSurvey, digestio::kSuitability}) {
    if (!pieces.results[kind].empty()) return sourceIn(pieces.results[kind] + "/collector.log");
  }
  return {};
}

std::string timeSourceText(const std::string& source) {
  const std::size_t in = source.find(kIn);
  if (source.empty() || in == std::string::npos) return source.empty() ? source : "times by " + source;
  const std::string unit = source.substr(in + kIn.size());
  return "times by " + source + (unit == "seconds" ? "" : " (read s as " + unit + ")");
}

}  // namespace kelvar_tool
