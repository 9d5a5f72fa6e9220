#pragma once

#include <string>
#include <vector>

#include "Outcome.h"

namespace kelvar_import {

/// The name, in a survey's result directory, of the file that keeps where the time of each function went. No reader of
/// results asks for it; the import of loops does.
inline constexpr const char* kLineTimesFile = "lines.tsv";

/// A line each: the time, the line, the file, the function, with tabs between them.
[[nodiscard]] std::string lineTimesText(const std::vector<LineTime>& lines);
/// Nothing where there is no such file. Throws kelvar_platform::ReadError for one that does not fit.
[[nodiscard]] std::vector<LineTime> readLineTimes(const std::string& path);

}  // namespace kelvar_import
