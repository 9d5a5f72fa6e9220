#include "ProjectOnDisk.h"

#include <sqlite3.h>

#include <cstdint>
#include <optional>

#include "EditTable.h"
#include "ResultRecords.h"
#include "ResultWriter.h"
#include "Sqlite.h"

namespace kelvar_bench {

namespace {

using digestio::SummaryDataKind;

/// A statement for many rows; the platform's statements are for one use.
class Insertion {
 public:
  Insertion(const kelvar_platform::Connection& connection, const char* sql) : connection_(connection) {
    if (sqlite3_prepare_v2(connection.handle(), sql, -1, &statement_, nullptr) != SQLITE_OK) connection_.fail("");
  }
  ~Insertion() { sqlite3_finalize(statement_); }
  Insertion(const Insertion&) = delete;  // it owns its statement
  Insertion& operator=(const Insertion&) = delete;

  void bind(int parameter, std::int64_t value) { sqlite3_bind_int64(statement_, parameter, value); }
  void bind(int parameter, const std::string& text) {
    sqlite3_bind_text64(statement_, parameter, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
  }
  void insert() {
    if (sqlite3_step(statement_) != SQLITE_DONE) connection_.fail("");
    sqlite3_reset(statement_);
  }

 private:
  const kelvar_platform::Connection& connection_;
  sqlite3_stmt* statement_ = nullptr;
};

void insertEdits(const kelvar_platform::Connection& connection, const GeneratedProject& project) {
  Insertion row(connection,
                "INSERT INTO edit (sequence, alive, disabled, kind, label, file, line, \"column\") "
                "VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
  for (const Edit& edit : project.edits()) {
    const std::string label = GeneratedProject::label(edit.label);
    row.bind(1, static_cast<std::int64_t>(edit.sequence));
    row.bind(2, edit.alive ? 1 : 0);
    row.bind(3, edit.disabled ? 1 : 0);
    row.bind(4, edit.kind);
    row.bind(5, label);
    row.bind(6, project.file(edit.place.file));
    row.bind(7, edit.place.line);
    row.bind(8, edit.place.column);
    row.insert();
  }
}

void insertStates(const kelvar_platform::Connection& connection, const GeneratedProject& project) {
  Insertion row(connection, "INSERT INTO state (path, revision) VALUES (?, ?)");
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const std::string path = resultPath(kind);
    row.bind(1, path);
    row.bind(2, static_cast<std::int64_t>(project.recordedRevision()));
    row.insert();
  }
}

void writeDatabase(const GeneratedProject& project, const std::filesystem::path& file) {
  std::filesystem::remove(file);
  const kelvar_platform::Connection connection(file.string(), kelvar_platform::Connection::Access::create);
  connection.run("PRAGMA synchronous = OFF");
  kelvar_platform::Transaction transaction(connection, kelvar_platform::Transaction::Kind::write);
  kelvar_platform::createTables(connection);
  insertEdits(connection, project);
  insertStates(connection, project);
  transaction.commit();
}

int bitsOf(const Detail& detail, unsigned shift, unsigned count) {
  return static_cast<int>((detail.bits >> shift) % count);
}

using kelvar_platform::DetailRecord;

/// Sets the values of a record, by the collection's kind.
constexpr kelvar_2_1_7::PerKind<void (*)(DetailRecord&, const Detail&)> kSetFigures{{
    [](DetailRecord& record, const Detail& detail) {
      record.survey = {.cpuTime = detail.selfTime, .priority = 1 + bitsOf(detail, 0, 5), .id = bitsOf(detail, 3, 100)};
    },
    [](DetailRecord& record, const Detail& detail) {
      record.surveyVectorization = {.selfTime = detail.selfTime,
                                    .totalTime = detail.totalTime,
                                    .state = bitsOf(detail, 0, 4),
                                    .id = bitsOf(detail, 2, 100'000),
                                    .priority = 1 + bitsOf(detail, 20, 5)};
    },
    [](DetailRecord& record, const Detail& detail) {
      record.suitability = {.selfTime = detail.selfTime,
                            .siteMaxGain = detail.siteGain,
                            .totalMaxGain = detail.programGain,
                            .cores = 1 << bitsOf(detail, 0, 6),
                            .flags = detail.bits % 32};
    },
    [](DetailRecord& record, const Detail& detail) {
      record.dependencies = {.errors = bitsOf(detail, 0, 7), .warnings = {bitsOf(detail, 3, 11), bitsOf(detail, 8, 9)}};
    },
    [](DetailRecord& record, const Detail& detail) {
      record.map = {.strides = {bitsOf(detail, 0, 100'000), bitsOf(detail, 8, 1000), bitsOf(detail, 16, 300)}};
    },
}};

DetailRecord recordOf(const GeneratedProject& project, SummaryDataKind kind, const Detail& detail) {
  DetailRecord record;
  record.detailKind = detail.detailKind;
  record.annotationKind = detail.annotationKind;
  record.label = GeneratedProject::label(detail.label);
  record.file = project.file(detail.place.file);
  record.line = detail.place.line;
  record.column = detail.place.column;
  kSetFigures[kind](record, detail);
  return record;
}

kelvar_platform::RunRecord runOf(SummaryDataKind kind) {
  const std::uint64_t start = 1'700'000'000 + 3600 * static_cast<std::uint64_t>(kind);
  kelvar_platform::RunRecord run;
  run.hostName = "node17";
  run.operatingSystem = "Linux 6.1";
  run.collectionStartTime = start;
  run.collectionEndTime = start + 42;
  run.finalizationStartTime = start + 43;
  run.finalizationEndTime = start + 45;
  run.cpuCount = 16;
  run.cpuFrequency = 2'400'000'000;
  return run;
}

void writeResult(const GeneratedProject& project, SummaryDataKind kind, const std::filesystem::path& directory) {
  std::optional<kelvar_platform::RunRecord> run;
  if (kind != digestio::kSurveyVectorization) run = runOf(kind);  // a sub-result has none
  const kelvar_platform::ProgramRecord program{
      .dataKind = kind, .processors = 16, .threadingParadigm = 2, .targetSystem = 1, .programMaxGain = 3.5};
  kelvar_platform::ResultWriter writer(directory, run, program);
  for (const Detail& detail : project.details(kind)) writer.add(recordOf(project, kind, detail));
  writer.finish();
}

}  // namespace

std::string resultPath(SummaryDataKind kind) {
  constexpr kelvar_2_1_7::PerKind<const char*> kPaths{
      {"survey", "survey/surveyvectorization", "suitability", "dependencies", "map"}};
  return kPaths[kind];
}

void writeProject(const GeneratedProject& project, const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  writeDatabase(project, directory / "annotations.db");
  // The survey comes before its sub-result.
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) writeResult(project, kind, directory / resultPath(kind));
}

}  // namespace kelvar_bench
