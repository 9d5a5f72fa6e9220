#pragma once

#include <filesystem>
#include <string>

#include "ResultRecords.h"

namespace kelvar_platform {

/// Reads `file`, a result.json. Throws a ReadError at the first value that does not fit.
[[nodiscard]] RunRecord readRunFile(const std::string& file);

/// Writes a result.json to `file`, which must not exist, and names it `name` in the ReadErrors that it throws.
void writeRunFile(const std::filesystem::path& file, const std::filesystem::path& name, const RunRecord& run);

}  // namespace kelvar_platform
