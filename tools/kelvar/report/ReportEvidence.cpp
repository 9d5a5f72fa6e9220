#include "ReportEvidence.h"

#include "Diagnosis.h"
#include "Names.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::Evidence;
using kelvar_platform::EvidencePlace;

ResultEvidence readResult(const std::string& directory) {
  ResultEvidence result{.collection = nullptr, .lines = kelvar_platform::readEvidence(directory)};
  if (result.lines.empty()) return result;
  result.collection.reset(digestio::SummaryCollection::load(directory));
  (void)kelvar_platform::takeRefusals();  // already reported when the project was loaded
  if (!result.collection) {
    result.lines.clear();
    return result;
  }
  for (std::size_t i = 0; i < result.lines.size(); ++i) {
    if (result.lines[i].detail < result.collection->detailCount()) continue;
    const std::string count = std::to_string(result.collection->detailCount());
    throw kelvar_platform::ReadError({.file = directory + "/" + kelvar_platform::kEvidenceFile,
                                      .place = "line " + std::to_string(i + 1) + ", detail",
                                      .expected = "a detail of the collection, which has " + count});
  }
  return result;
}

void writePlace(JsonText& json, const EvidencePlace& place) {
  json.beginObject({});
  json.value("role", place.role);
  json.value("file", place.file);
  json.value("line", std::int64_t{place.line});
  json.value("column", std::int64_t{place.column});
  json.value("function", place.function);
  json.endObject();
}

void writeLine(JsonText& json, const digestio::SummaryCollection& collection, const Evidence& line) {
  const digestio::SummaryDetail& detail = *collection.detail(line.detail);
  const auto place = detail.locator();
  json.beginObject({});
  json.value("dataKind", dataKindName(collection.dataKind()));
  json.value("label", std::string(detail.label()));
  json.value("file", std::string(place.get_file().get_text()));
  json.value("line", std::int64_t{place.get_line()});
  json.value("kind", std::string(kelvar_platform::kEvidenceKindNames[static_cast<std::size_t>(line.kind)]));
  json.value("text", line.text);
  json.value("object", line.object);
  json.value("count", line.count);
  json.beginList("places");
  for (const EvidencePlace& each : line.places) writePlace(json, each);
  json.endList();
  json.endObject();
}

}  // namespace

std::vector<ResultEvidence> evidenceOf(const Pieces& pieces, std::vector<std::string>& complaints) {
  std::vector<ResultEvidence> evidence;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (pieces.results[kind].empty()) continue;
    try {
      evidence.push_back(readResult(pieces.results[kind]));
    } catch (const kelvar_platform::ReadError& error) {
      complaints.emplace_back(error.what());
    }
  }
  return evidence;
}

void writeEvidence(JsonText& json, const std::vector<ResultEvidence>& evidence) {
  json.beginList("evidence");
  for (const ResultEvidence& result : evidence) {
    for (const Evidence& line : result.lines) writeLine(json, *result.collection, line);
  }
  json.endList();
}

}  // namespace kelvar_tool
