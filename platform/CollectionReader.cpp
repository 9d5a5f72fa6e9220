#include "CollectionReader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "JsonFields.h"
#include "KnownPaths.h"
#include "ResultKinds.h"

namespace kelvar_platform {

namespace {

using namespace json;

/// `{},` is the shortest detail: a file that the reader takes has fewer than an int counts.
static_assert(FileText::kMaxSize / 3 < std::numeric_limits<int>::max());

constexpr std::int64_t kMaxInt = std::numeric_limits<std::int32_t>::max();
constexpr auto kAlways = true;  // inside a record every value is required

constexpr std::array<JsonField<SurveyRecord>, 3> kSurveyFields{{
    {"cpuTime", finite<&SurveyRecord::cpuTime>, kAlways},
    {"priority", integer<&SurveyRecord::priority>, kAlways},
    {"id", integer<&SurveyRecord::id>, kAlways},
}};
constexpr std::array<JsonField<SurveyVectorizationRecord>, 5> kSurveyVectorizationFields{{
    {"state", integer<&SurveyVectorizationRecord::state>, kAlways},
    {"selfTime", finite<&SurveyVectorizationRecord::selfTime>, kAlways},
    {"totalTime", finite<&SurveyVectorizationRecord::totalTime>, kAlways},
    {"id", integer<&SurveyVectorizationRecord::id>, kAlways},
    {"priority", integer<&SurveyVectorizationRecord::priority>, kAlways},
}};
constexpr std::array<JsonField<SuitabilityRecord>, 5> kSuitabilityFields{{
    {"selfTime", finite<&SuitabilityRecord::selfTime>, kAlways},
    {"cores", integer<&SuitabilityRecord::cores>, kAlways},
    {"flags", integer<&SuitabilityRecord::flags>, kAlways},
    {"siteMaxGain", finite<&SuitabilityRecord::siteMaxGain>, kAlways},
    {"totalMaxGain", finite<&SuitabilityRecord::totalMaxGain>, kAlways},
}};
constexpr std::array<JsonField<CorrectnessRecord>, 2> kCorrectnessFields{{
    {"errors", integer<&CorrectnessRecord::errors>, kAlways},
    {"warnings", integers<&CorrectnessRecord::warnings>, kAlways},
}};
constexpr std::array<JsonField<MapRecord>, 1> kMapFields{{
    {"strides", integers<&MapRecord::strides>, kAlways},
}};

/// A collection while it is read.
struct Reading {
  Collection& collection;
  std::vector<DetailFields>& details;  // the last one is being read
  KnownPaths files;
};

void readLabel(JsonReader& in, JsonValue& value, Reading& out) {
  out.details.back().label = in.text(value);
}

void readFile(JsonReader& in, JsonValue& value, Reading& out) {
  out.details.back().file = out.files.of(in.text(value));
}

template <auto member, std::int64_t max>
void readSite(JsonReader& in, JsonValue& value, Reading& out) {
  integerUpTo<member, max>(in, value, out.details.back());
}

template <class View, class Record, const auto& fields>
void readView(JsonReader& in, JsonValue& value, Reading& out) {
  Record record;
  in.readObject(value, fields, record);
  out.collection.add(View(record), out.details.back().views);
}

constexpr std::array<JsonField<Reading>, 11> kDetailFields{{
    {"detailKind", readSite<&DetailFields::detailKind, digestio::kLoop>},
    {"annotationKind", readSite<&DetailFields::annotationKind, sitenotes::annotation_t::teams>},
    {"label", readLabel},
    {"file", readFile},
    {"line", readSite<&DetailFields::line, kMaxInt>},
    {"column", readSite<&DetailFields::column, kMaxInt>},
    {"survey", readView<SurveyView, SurveyRecord, kSurveyFields>},
    {"surveyVectorization", readView<SurveyVectorizationView, SurveyVectorizationRecord, kSurveyVectorizationFields>},
    {"suitability", readView<SuitabilityView, SuitabilityRecord, kSuitabilityFields>},
    {"dependencies", readView<CorrectnessView, CorrectnessRecord, kCorrectnessFields>},
    {"map", readView<MapView, MapRecord, kMapFields>},
}};

void readDetails(JsonReader& in, JsonValue& value, Reading& out) {
  in.readList(value, [&](JsonValue& element) {
    out.details.emplace_back();
    in.readObject(element, kDetailFields, out);
  });
}

void readDataKind(JsonReader& in, JsonValue& value, Reading& out) {
  const std::string_view name = in.text(value);
  const auto known = std::find(kDataKindNames.begin(), kDataKindNames.end(), name);
  if (known == kDataKindNames.end()) in.refuse("survey, surveyvectorization, suitability, dependencies or map");
  out.collection.program().dataKind = static_cast<digestio::SummaryDataKind>(known - kDataKindNames.begin());
}

template <auto member>
void readCount(JsonReader& in, JsonValue& value, Reading& out) {
  integer<member>(in, value, out.collection.program());
}

void readProgramMaxGain(JsonReader& in, JsonValue& value, Reading& out) {
  finite<&ProgramRecord::programMaxGain>(in, value, out.collection.program());
}

constexpr std::array<JsonField<Reading>, 8> kCollectionFields{{
    {"formatVersion", formatVersion<Reading>, kAlways},
    {"dataKind", readDataKind, kAlways},
    {"processors", readCount<&ProgramRecord::processors>},
    {"kovaThreads", readCount<&ProgramRecord::kovaThreads>},
    {"threadingParadigm", readCount<&ProgramRecord::threadingParadigm>},
    {"targetSystem", readCount<&ProgramRecord::targetSystem>},
    {"programMaxGain", readProgramMaxGain},
    {"details", readDetails},
}};

}  // namespace

std::string collectionFile(const std::string& result) {
  return result + "/collection.json";
}

std::unique_ptr<Collection> CollectionReader::read(const std::string& result) {
  auto collection = std::make_unique<Collection>();
  details_.clear();
  Reading reading{.collection = *collection, .details = details_, .files = {}};
  in_.readDocument(collectionFile(result), kCollectionFields, reading);
  collection->take(details_);
  return collection;
}

}  // namespace kelvar_platform
