#pragma once

#include <filesystem>
#include <string>

#include "GeneratedProject.h"

namespace kelvar_bench {

/// Writes `project` as a project directory at `directory`, in place of what stood there under the same names.
/// Throws std::runtime_error or a system error where it cannot.
void writeProject(const GeneratedProject& project, const std::filesystem::path& directory);

/// Where the result of `kind` stands in a project, relative to its directory.
[[nodiscard]] std::string resultPath(digestio::SummaryDataKind kind);

}  // namespace kelvar_bench
