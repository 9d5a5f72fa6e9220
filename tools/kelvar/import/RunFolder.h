#pragma once

#include <string>
#include <vector>

#include "ResultRecords.h"

/// The runs of a project: `PROJECT/runs/NAME`, each with results as a project has them, and the project's annotations.
namespace kelvar_import {

/// What is known of a whole run, `run.json` beside its results. Empty and 0: not known.
struct RunFacts {
  std::string command;  ///< as a shell would take it
  std::string hostName;
  std::string revision;  ///< of the sources, git's; `+` at its end where they were changed since
  std::uint64_t startTime = 0;
  std::uint64_t endTime = 0;
  std::int32_t exitStatus = 0;  ///< of the program; 128 and the signal where one ended it

  bool operator==(const RunFacts&) const = default;
};

/// What a run may be called, for a refusal.
inline constexpr const char* kRunNameRule =
    "a name in UTF-8 of at most 200 bytes, without slashes, control characters or a dot at its beginning";
[[nodiscard]] bool isRunName(const std::string& name);

/// The directory of a run. `name` may name one.
[[nodiscard]] std::string runDirectory(const std::string& project, const std::string& name);

/// The annotations that count for a project's or a run's directory, which need not be there.
[[nodiscard]] std::string annotationsOf(const std::string& directory);

/// The names of the runs of a project, in order.
[[nodiscard]] std::vector<std::string> runNames(const std::string& project);

/// What is known of the run in `directory`; nothing where it has no run.json. Throws a ReadError where that is damaged.
[[nodiscard]] RunFacts readRunFacts(const std::string& directory);
/// Replaces what was known. Throws a ReadError where it cannot be written.
void writeRunFacts(const std::string& directory, const RunFacts& facts);

}  // namespace kelvar_import
