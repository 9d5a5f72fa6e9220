#include "World.h"

#include <sstream>

namespace suite {

namespace {

constexpr const char* kNames[] = {"survey", "loop", "gain", "deps", "map"};

char sign(kelvar::SummaryDataStatus status) {
  return std::string(".!-~=+").at(static_cast<std::size_t>(status));
}

void write(std::ostream& out, const sitenotes::locator_t& place) {
  toolbelt::path_t file = place.get_file();
  out << std::string(file.get_leaf()) << ':' << place.get_line();
  if (place.get_column() != 0) out << ':' << place.get_column();
}

/// What the detail's own view of the kind says, or nothing.
void writeValue(std::ostream& out, const kelvar::SummaryItem& item, digestio::SummaryDataKind kind) {
  if (kind == kSurvey && item.surveyDetail() != nullptr) out << item.surveyDetail()->cpuTime();
  if (kind == kVectorization && item.surveyVectorizationDetail() != nullptr) {
    out << item.surveyVectorizationDetail()->selfTime();
  }
  if (kind == kSuitability && item.suitabilityDetail() != nullptr) out << item.suitabilityDetail()->selfTime();
  if (kind == kDependencies && item.correctnessDetail() != nullptr) out << item.correctnessDetail()->errors();
  if (kind == kMap && item.mapDetail() != nullptr) out << item.mapDetail()->strides(0);
}

void write(std::ostream& out, const kelvar::SummaryItem& item) {
  out << sign(item.summaryDataStatus()) << ' ' << item.label() << ' ';
  write(out, item.locator());
  out << " k" << static_cast<int>(item.annotationKind());
  if (item.detailKind() != digestio::SummaryDetailKind{0}) out << " d" << static_cast<int>(item.detailKind());
  if (item.handle() != 0) out << " #" << item.handle();
  for (const digestio::SummaryDataKind kind : kKinds) {
    if (item.summaryDataStatus(kind) == kelvar::kNotPresent) continue;
    out << ' ' << kNames[static_cast<int>(kind)] << sign(item.summaryDataStatus(kind));
    writeValue(out, item, kind);
  }
  out << (item.isSelected() ? " *\n" : "\n");
}

}  // namespace

std::string rows(kelvar::SummaryData& data) {
  std::ostringstream out;
  for (int index = 0; index < data.num_items(); ++index) write(out, *data.item(index));
  return out.str();
}

std::string everything(kelvar::SummaryData& data) {
  return rows(data) + data.asString(true) + std::to_string(data.aggregateResult()->resultCount());
}

std::string World::result(const std::string& path, digestio::SummaryDataKind kind, std::vector<Detail> details) {
  Result& result = current.results[path];
  result.kind = kind;
  for (const Detail& each : details) result.details.push_back(std::make_shared<Detail>(each));
  return path;
}

}  // namespace suite
