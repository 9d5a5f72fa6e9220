#include "ResultWriter.h"

#include <unistd.h>

#include <string>
#include <utility>

#include "CollectionFile.h"
#include "JsonWriter.h"
#include "RunFile.h"
#include "StagedDirectory.h"

namespace kelvar_platform {

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

  void finish() {
    collection_.endList();
    collection_.endObject();
    collection_.close();
    staged_.install();
  }

 private:
  StagedDirectory staged_;
  JsonWriter collection_;
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
