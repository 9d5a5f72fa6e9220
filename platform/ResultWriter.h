#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "Evidence.h"
#include "PlatformExport.h"
#include "ResultRecords.h"

namespace kelvar_platform {

/// Writes a result directory detail by detail. It grows under a name of its own beside its place and takes that place
/// in finish(): until then a reader sees what stood there before, and without finish() that stays.
///
/// What stands in the place is replaced as a whole, sub-result and logs included, since they belong to another run;
/// it must be a result directory, an empty one, or nothing. Missing folders above it are made.
///
/// Every operation throws a ReadError where the disk refuses, or where a value could not be read back: the place is
/// then named as the reader would name it (`details[3].survey.cpuTime`). After one, the writer can only go.
class PLATFORM_EXPORT ResultWriter {
 public:
  /// Without `run` there is no result.json: so it is in a sub-result, `RESULT/surveyvectorization`.
  ResultWriter(const std::filesystem::path& directory, const std::optional<RunRecord>& run,
               const ProgramRecord& program);
  /// Removes what was not finished.
  ~ResultWriter();
  ResultWriter(ResultWriter&&) noexcept;
  ResultWriter& operator=(ResultWriter&&) noexcept;

  void add(const DetailRecord& detail);
  /// What the collection's details rest on; taken in any order, written as writeEvidence does.
  void add(Evidence evidence);
  /// Puts the result in its place. Called once, at the end.
  void finish();

 private:
  class Output;
  std::unique_ptr<Output> output_;
};

/// Writes `directory`/result.json alone, replacing the one before: for a directory that only carries a sub-result.
/// Throws a ReadError as ResultWriter does.
PLATFORM_EXPORT void writeRun(const std::filesystem::path& directory, const RunRecord& run);

}  // namespace kelvar_platform
