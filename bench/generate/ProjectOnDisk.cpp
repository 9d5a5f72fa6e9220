#include "ProjectOnDisk.h"

#include <sqlite3.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <system_error>

#include "EditTable.h"
#include "Sqlite.h"
#include "names.h"

namespace kelvar_bench {

namespace {

using digestio::SummaryDataKind;

/// A statement for many rows. The platform's own are made for one use.
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

struct Close {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

File create(const std::filesystem::path& path) {
  File file(std::fopen(path.c_str(), "w"));
  if (!file) throw std::system_error(errno, std::generic_category(), path.string());
  return file;
}

void finish(const File& file, const std::filesystem::path& path) {
  if (std::fflush(file.get()) != 0 || std::ferror(file.get()) != 0)
    throw std::system_error(errno, std::generic_category(), path.string());
}

int bitsOf(const Detail& detail, unsigned shift, unsigned count) {
  return static_cast<int>((detail.bits >> shift) % count);
}

void writeSurvey(std::FILE* out, const Detail& detail) {
  std::fprintf(out, R"("survey": {"cpuTime": %.6f, "priority": %d, "id": %d})", detail.selfTime,
               1 + bitsOf(detail, 0, 5), bitsOf(detail, 3, 100));
}

void writeVectorization(std::FILE* out, const Detail& detail) {
  std::fprintf(
      out, R"("surveyVectorization": {"state": %d, "selfTime": %.6f, "totalTime": %.6f, "id": %d, "priority": %d})",
      bitsOf(detail, 0, 4), detail.selfTime, detail.totalTime, bitsOf(detail, 2, 100'000), 1 + bitsOf(detail, 20, 5));
}

void writeSuitability(std::FILE* out, const Detail& detail) {
  std::fprintf(
      out, R"("suitability": {"selfTime": %.6f, "cores": %d, "flags": %d, "siteMaxGain": %.2f, "totalMaxGain": %.2f})",
      detail.selfTime, 1 << bitsOf(detail, 0, 6), bitsOf(detail, 6, 32), detail.siteGain, detail.programGain);
}

void writeDependencies(std::FILE* out, const Detail& detail) {
  std::fprintf(out, R"("dependencies": {"errors": %d, "warnings": [%d, %d]})", bitsOf(detail, 0, 7),
               bitsOf(detail, 3, 11), bitsOf(detail, 8, 9));
}

void writeMap(std::FILE* out, const Detail& detail) {
  std::fprintf(out, R"("map": {"strides": [%d, %d, %d]})", bitsOf(detail, 0, 100'000), bitsOf(detail, 8, 1000),
               bitsOf(detail, 16, 300));
}

/// The one record that a detail of the kind has.
constexpr kelvar_2_1_7::PerKind<void (*)(std::FILE*, const Detail&)> kWriteRecord{
    {writeSurvey, writeVectorization, writeSuitability, writeDependencies, writeMap}};

void writeCollection(const GeneratedProject& project, SummaryDataKind kind, const std::filesystem::path& path) {
  const File file = create(path);
  std::FILE* out = file.get();
  std::fprintf(out, "{\n  \"formatVersion\": 1,\n  \"dataKind\": \"%s\",\n  \"processors\": 16,\n",
               kelvar_2_1_7::kKindNames[static_cast<std::size_t>(kind)]);
  std::fputs("  \"threadingParadigm\": 2,\n  \"targetSystem\": 1,\n  \"programMaxGain\": 3.5,\n  \"details\": [", out);
  const char* separator = "\n";
  for (const Detail& detail : project.details(kind)) {
    std::fprintf(out, R"(%s    {"detailKind": %d, "annotationKind": %d, "label": "%s", "file": "%s", )", separator,
                 detail.detailKind, detail.annotationKind, GeneratedProject::label(detail.label).c_str(),
                 project.file(detail.place.file).c_str());
    std::fprintf(out, R"("line": %d, "column": %d, )", detail.place.line, detail.place.column);
    kWriteRecord[kind](out, detail);
    std::fputc('}', out);
    separator = ",\n";
  }
  std::fputs("\n  ]\n}\n", out);
  finish(file, path);
}

void writeRun(SummaryDataKind kind, const std::filesystem::path& path) {
  const File file = create(path);
  const int start = 1'700'000'000 + 3600 * static_cast<int>(kind);
  std::fprintf(file.get(),
               "{\"formatVersion\": 1, \"hostName\": \"node17\", \"operatingSystem\": \"Linux 6.1\",\n"
               " \"collectionStartTime\": %d, \"collectionEndTime\": %d,\n"
               " \"finalizationStartTime\": %d, \"finalizationEndTime\": %d,\n"
               " \"cpuCount\": 16, \"cpuFrequency\": 2400000000}\n",
               start, start + 42, start + 43, start + 45);
  finish(file, path);
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
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const std::filesystem::path result = directory / resultPath(kind);
    std::filesystem::create_directories(result);
    writeCollection(project, kind, result / "collection.json");
    if (kind != digestio::kSurveyVectorization) writeRun(kind, result / "result.json");
  }
}

}  // namespace kelvar_bench
