#pragma once

#include <filesystem>
#include <string>

#include "GeneratedProject.h"

namespace kelvar_bench {

/// Writes `project` as a project directory at `directory`, replacing files with the same names. Throws
/// std::runtime_error or a system error.
void writeProject(const GeneratedProject& project, const std::filesystem::path& directory);

/// The path of the result of `kind`, relative to the project directory.
[[nodiscard]] std::string resultPath(digestio::SummaryDataKind kind);

}  // namespace kelvar_bench
