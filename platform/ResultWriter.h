#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "Evidence.h"
#include "PlatformExport.h"
#include "ResultRecords.h"

namespace kelvar_platform {

/// Writes a result directory detail by detail. It is written under a temporary name beside its final one, and renamed
/// in finish(): until then readers see the old result, and without finish() it stays.
///
/// An existing result is replaced as a whole, with its sub-result and logs, since they belong to another run. The path
/// must be a result directory, an empty directory or nothing. Missing parent folders are created.
///
/// Every operation throws a ReadError if writing fails or if a value could not be read back; it names the place as the
/// reader would (`details[3].survey.cpuTime`). After that, the writer can only be destroyed.
class PLATFORM_EXPORT ResultWriter {
 public:
  /// Without `run` no result.json is written, as in a sub-result, `RESULT/surveyvectorization`.
  ResultWriter(const std::filesystem::path& directory, const std::optional<RunRecord>& run,
               const ProgramRecord& program);
  /// Removes what was not finished.
  ~ResultWriter();
  ResultWriter(ResultWriter&&) noexcept;
  ResultWriter& operator=(ResultWriter&&) noexcept;

  void add(const DetailRecord& detail);
  /// Evidence for the details, in any order; written as writeEvidence does.
  void add(Evidence evidence);
  /// Renames the result to its final name. Called once, at the end.
  void finish();

 private:
  class Output;
  std::unique_ptr<Output> output_;
};

/// Writes `directory`/result.json alone, replacing an existing one: for a directory that holds a sub-result only.
/// Throws a ReadError as ResultWriter does.
PLATFORM_EXPORT void writeRun(const std::filesystem::path& directory, const RunRecord& run);

}  // namespace kelvar_platform
