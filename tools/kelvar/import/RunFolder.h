#pragma once

#include <string>
#include <vector>

#include "ResultRecords.h"

/// The runs of a project: `PROJECT/runs/NAME`, each with results as a project has them, and the project's annotations.
namespace kelvar_import {

/// The facts about a whole run, from `run.json` beside its results. Unknown ones are empty or 0.
struct RunFacts {
  std::string command;  ///< quoted for a shell
  std::string hostName;
  std::string revision;         ///< git revision of the sources, with a final `+` for uncommitted changes
  std::uint64_t startTime = 0;  ///< seconds since 1970
  std::uint64_t endTime = 0;    ///< seconds since 1970
  std::int32_t exitStatus = 0;  ///< of the program; 128 + the signal that ended it

  bool operator==(const RunFacts&) const = default;
};

/// The rule for names of runs, for error messages.
inline constexpr const char* kRunNameRule =
    "a name in UTF-8 of at most 200 bytes, without slashes, control characters or a dot at its beginning";
[[nodiscard]] bool isRunName(const std::string& name);

/// The directory of a run, which need not exist. Requires isRunName(name).
[[nodiscard]] std::string runDirectory(const std::string& project, const std::string& name);

/// The annotation database of a project or a run: its own, or for a run without one, its project's. Need not exist.
[[nodiscard]] std::string annotationsOf(const std::string& directory);

/// The names of a project's runs, sorted. Throws a ReadError when the folder cannot be read.
[[nodiscard]] std::vector<std::string> runNames(const std::string& project);

/// The facts about the run in `directory`; all unknown if it has no run.json. Throws a ReadError if that is damaged.
[[nodiscard]] RunFacts readRunFacts(const std::string& directory);
/// Replaces run.json. Throws a ReadError when it cannot be written.
void writeRunFacts(const std::string& directory, const RunFacts& facts);

}  // namespace kelvar_import
