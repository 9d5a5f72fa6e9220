#include "CollectionFile.h"

#include <algorithm>
#include <limits>

#include "JsonFields.h"
#include "KnownPaths.h"
#include "ResultKinds.h"

// What a collection.json holds, one row for each value: its key, the member that holds it, and, by the member's type,
// how it is read and written. A value that is added here is read and written.
namespace kelvar_platform {

namespace {

using json::any;

/// `{},` is the shortest detail: a file that the reader takes has fewer than an int counts.
static_assert(FileText::kMaxSize / 3 < std::numeric_limits<int>::max());

constexpr std::int64_t kMaxInt = std::numeric_limits<std::int32_t>::max();
constexpr auto kAlways = true;  // inside a record every value is required

constexpr auto kSurveyFields = std::to_array<JsonField<SurveyRecord>>({
    any<&SurveyRecord::cpuTime>("cpuTime", kAlways),
    any<&SurveyRecord::priority>("priority", kAlways),
    any<&SurveyRecord::id>("id", kAlways),
});
constexpr auto kSurveyVectorizationFields = std::to_array<JsonField<SurveyVectorizationRecord>>({
    any<&SurveyVectorizationRecord::state>("state", kAlways),
    any<&SurveyVectorizationRecord::selfTime>("selfTime", kAlways),
    any<&SurveyVectorizationRecord::totalTime>("totalTime", kAlways),
    any<&SurveyVectorizationRecord::id>("id", kAlways),
    any<&SurveyVectorizationRecord::priority>("priority", kAlways),
});
constexpr auto kSuitabilityFields = std::to_array<JsonField<SuitabilityRecord>>({
    any<&SuitabilityRecord::selfTime>("selfTime", kAlways),
    any<&SuitabilityRecord::cores>("cores", kAlways),
    any<&SuitabilityRecord::flags>("flags", kAlways),
    any<&SuitabilityRecord::siteMaxGain>("siteMaxGain", kAlways),
    any<&SuitabilityRecord::totalMaxGain>("totalMaxGain", kAlways),
});
constexpr auto kCorrectnessFields = std::to_array<JsonField<CorrectnessRecord>>({
    any<&CorrectnessRecord::errors>("errors", kAlways),
    any<&CorrectnessRecord::warnings>("warnings", kAlways),
});
constexpr auto kMapFields = std::to_array<JsonField<MapRecord>>({
    any<&MapRecord::strides>("strides", kAlways),
});

/// A collection while it is read.
struct Reading : ProgramRecord {
  Collection& collection;
  std::vector<DetailFields>& details;  // the last one is being read
  KnownPaths files = {};
};

using DetailField = JsonField<Reading, DetailRecord>;

/// An integer from 0 to `max`, in the detail that is being read and in one that is written.
template <auto field, auto member, std::int64_t max>
constexpr DetailField site(std::string_view key) {
  return {key,
          [](JsonReader& in, JsonValue& value, Reading& to) {
            to.details.back().*field = static_cast<json::ValueOf<field>>(in.integer(value, 0, max));
          },
          [](JsonWriter& out, std::string_view name, const DetailRecord& from) {
            out.integer(name, from.*member, 0, max);
          }};
}

/// The record of one analysis; the key is omitted if there is none.
template <class View, auto member, const auto& fields>
constexpr DetailField view(std::string_view key) {
  using Record = typename json::ValueOf<member>::value_type;
  return {key,
          [](JsonReader& in, JsonValue& value, Reading& to) {
            Record record;
            in.readObject(value, fields, record);
            to.collection.add(View(record), to.details.back().views);
          },
          [](JsonWriter& out, std::string_view name, const DetailRecord& from) {
            if (!(from.*member)) return;
            out.beginObject(name);
            json::writeFields(out, fields, *(from.*member));
            out.endObject();
          }};
}

void readLabel(JsonReader& in, JsonValue& value, Reading& to) {
  to.details.back().label = in.text(value);
}

void readFile(JsonReader& in, JsonValue& value, Reading& to) {
  to.details.back().file = to.files.of(in.text(value));
}

template <auto member>
void writeText(JsonWriter& out, std::string_view key, const DetailRecord& from) {
  out.text(key, from.*member);
}

using Kind = sitenotes::annotation_t;
constexpr auto kDetailFields = std::to_array<DetailField>({
    site<&DetailFields::detailKind, &DetailRecord::detailKind, digestio::kLoop>("detailKind"),
    site<&DetailFields::annotationKind, &DetailRecord::annotationKind, Kind::teams>("annotationKind"),
    {"label", readLabel, writeText<&DetailRecord::label>},
    {"file", readFile, writeText<&DetailRecord::file>},
    site<&DetailFields::line, &DetailRecord::line, kMaxInt>("line"),
    site<&DetailFields::column, &DetailRecord::column, kMaxInt>("column"),
    view<SurveyView, &DetailRecord::survey, kSurveyFields>("survey"),
    view<SurveyVectorizationView, &DetailRecord::surveyVectorization, kSurveyVectorizationFields>(
        "surveyVectorization"),
    view<SuitabilityView, &DetailRecord::suitability, kSuitabilityFields>("suitability"),
    view<CorrectnessView, &DetailRecord::dependencies, kCorrectnessFields>("dependencies"),
    view<MapView, &DetailRecord::map, kMapFields>("map"),
});

void readDetails(JsonReader& in, JsonValue& value, Reading& to) {
  in.readList(value, [&](JsonValue& element) {
    to.details.emplace_back();
    in.readObject(element, kDetailFields, to);
  });
}

void readDataKind(JsonReader& in, JsonValue& value, Reading& to) {
  const std::string_view name = in.text(value);
  const auto known = std::find(kDataKindNames.begin(), kDataKindNames.end(), name);
  if (known == kDataKindNames.end()) in.refuse("survey, surveyvectorization, suitability, dependencies or map");
  to.dataKind = static_cast<digestio::SummaryDataKind>(known - kDataKindNames.begin());
}

void writeDataKind(JsonWriter& out, std::string_view key, const ProgramRecord& from) {
  out.text(key, kDataKindNames.at(static_cast<std::size_t>(from.dataKind)));
}

constexpr auto kCollectionFields = std::to_array<JsonField<Reading, ProgramRecord>>({
    json::formatVersion<Reading, ProgramRecord>(),
    {"dataKind", readDataKind, writeDataKind, true},
    any<&ProgramRecord::processors, Reading>("processors"),
    any<&ProgramRecord::kovaThreads, Reading>("kovaThreads"),
    any<&ProgramRecord::threadingParadigm, Reading>("threadingParadigm"),
    any<&ProgramRecord::targetSystem, Reading>("targetSystem"),
    any<&ProgramRecord::programMaxGain, Reading>("programMaxGain"),
    {"details", readDetails},  // written one by one
});

}  // namespace

std::string collectionFile(const std::string& result) {
  return result + "/collection.json";
}

void readCollection(JsonReader& in, const std::string& file, Collection& out, std::vector<DetailFields>& details) {
  Reading reading{{}, out, details};
  in.readDocument(file, kCollectionFields, reading);
  out.program() = static_cast<const ProgramRecord&>(reading);
}

void writeProgram(JsonWriter& out, const ProgramRecord& program) {
  json::writeFields(out, kCollectionFields, program);
}

void writeDetail(JsonWriter& out, const DetailRecord& detail) {
  out.beginObject({});
  json::writeFields(out, kDetailFields, detail);
  out.endObject();
}

}  // namespace kelvar_platform
