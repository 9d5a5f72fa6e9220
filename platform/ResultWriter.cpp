#include "ResultWriter.h"

#include <unistd.h>

#include <string>
#include <utility>

#include "JsonWriter.h"
#include "ResultKinds.h"
#include "StagedDirectory.h"

namespace kelvar_platform {

namespace {

constexpr std::int64_t kMaxInt = 0x7FFFFFFF;

void writeRecord(JsonWriter& out, const SurveyRecord& record) {
  out.number("cpuTime", record.cpuTime);
  out.integer("priority", record.priority);
  out.integer("id", record.id);
}

void writeRecord(JsonWriter& out, const SurveyVectorizationRecord& record) {
  out.integer("state", record.state);
  out.number("selfTime", record.selfTime);
  out.number("totalTime", record.totalTime);
  out.integer("id", record.id);
  out.integer("priority", record.priority);
}

void writeRecord(JsonWriter& out, const SuitabilityRecord& record) {
  out.number("selfTime", record.selfTime);
  out.integer("cores", record.cores);
  out.integer("flags", record.flags);
  out.number("siteMaxGain", record.siteMaxGain);
  out.number("totalMaxGain", record.totalMaxGain);
}

void writeRecord(JsonWriter& out, const CorrectnessRecord& record) {
  out.integer("errors", record.errors);
  out.integers("warnings", record.warnings);
}

void writeRecord(JsonWriter& out, const MapRecord& record) {
  out.integers("strides", record.strides);
}

template <class Record>
void writeView(JsonWriter& out, std::string_view key, const std::optional<Record>& record) {
  if (!record) return;
  out.beginObject(key);
  writeRecord(out, *record);
  out.endObject();
}

void writeDetail(JsonWriter& out, const DetailRecord& detail) {
  out.beginObject({});
  out.integer("detailKind", detail.detailKind, 0, digestio::kLoop);
  out.integer("annotationKind", detail.annotationKind, 0, sitenotes::annotation_t::teams);
  out.text("label", detail.label);
  out.text("file", detail.file);
  out.integer("line", detail.line, 0, kMaxInt);
  out.integer("column", detail.column, 0, kMaxInt);
  writeView(out, "survey", detail.survey);
  writeView(out, "surveyVectorization", detail.surveyVectorization);
  writeView(out, "suitability", detail.suitability);
  writeView(out, "dependencies", detail.dependencies);
  writeView(out, "map", detail.map);
  out.endObject();
}

void writeProgram(JsonWriter& out, const ProgramRecord& program) {
  out.integer("formatVersion", 1);
  out.text("dataKind", kDataKindNames.at(static_cast<std::size_t>(program.dataKind)));
  out.integer("processors", program.processors);
  out.integer("kovaThreads", program.kovaThreads);
  out.integer("threadingParadigm", program.threadingParadigm);
  out.integer("targetSystem", program.targetSystem);
  out.number("programMaxGain", program.programMaxGain);
}

void writeRunFile(const std::filesystem::path& file, const std::filesystem::path& name, const RunRecord& run) {
  JsonWriter out(file.string(), name.string());
  out.beginObject({});
  out.integer("formatVersion", 1);
  if (run.hostName) out.text("hostName", *run.hostName);
  if (run.operatingSystem) out.text("operatingSystem", *run.operatingSystem);
  out.unsigned64("collectionStartTime", run.collectionStartTime);
  out.unsigned64("collectionEndTime", run.collectionEndTime);
  out.unsigned64("finalizationStartTime", run.finalizationStartTime);
  out.unsigned64("finalizationEndTime", run.finalizationEndTime);
  out.integer("cpuCount", run.cpuCount, 0, kMaxInt);
  out.unsigned64("cpuFrequency", run.cpuFrequency);
  out.text("applicationLog", run.applicationLog);
  out.text("collectorLog", run.collectorLog);
  out.text("commandLog", run.commandLog);
  out.endObject();
  out.close();
}

}  // namespace

/// The staged directory with its collection, open for more details.
class ResultWriter::Output {
 public:
  Output(const std::filesystem::path& directory, const std::optional<RunRecord>& run, const ProgramRecord& program)
      : staged_(directory),
        collection_((staged_.path() / "collection.json").string(), (staged_.target() / "collection.json").string()) {
    if (run) writeRunFile(staged_.path() / "result.json", staged_.target() / "result.json", *run);
    collection_.beginObject({});
    writeProgram(collection_, program);
    collection_.beginList("details");
  }

  void add(const DetailRecord& detail) { writeDetail(collection_, detail); }
  void add(Evidence evidence) { evidence_.push_back(std::move(evidence)); }

  void finish() {
    collection_.endList();
    collection_.endObject();
    collection_.close();
    writeEvidence(staged_.path(), std::move(evidence_));
    staged_.install();
  }

 private:
  StagedDirectory staged_;
  JsonWriter collection_;
  std::vector<Evidence> evidence_;
};

ResultWriter::ResultWriter(const std::filesystem::path& directory, const std::optional<RunRecord>& run,
                           const ProgramRecord& program)
    : output_(std::make_unique<Output>(directory, run, program)) {}

ResultWriter::~ResultWriter() = default;
ResultWriter::ResultWriter(ResultWriter&&) noexcept = default;
ResultWriter& ResultWriter::operator=(ResultWriter&&) noexcept = default;

void ResultWriter::add(const DetailRecord& detail) {
  output_->add(detail);
}

void ResultWriter::add(Evidence evidence) {
  output_->add(std::move(evidence));
}

void ResultWriter::finish() {
  output_->finish();
}

void writeRun(const std::filesystem::path& directory, const RunRecord& run) {
  makeDirectories(directory);
  const std::filesystem::path target = directory / "result.json";
  const std::filesystem::path aside = directory / (".result.json." + std::to_string(::getpid()));
  writeRunFile(aside, target, run);
  moveInto(aside, target);
}

}  // namespace kelvar_platform
