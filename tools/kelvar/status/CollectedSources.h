#pragma once

#include <string>
#include <vector>

#include "AnchoredSites.h"

namespace kelvar_tool {

/// Records the state of the source files at the time of collection in `sources.txt` beside a result: a line for each
/// with digest, line count and name. Throws kelvar_platform::ReadError when it cannot be written.
void writeCollectedSources(const std::string& result, const std::vector<kelvar_platform::SourceRow>& sources);

/// The files that were edited since the result was collected, as the database names them; empty without a
/// `sources.txt`. Names are relative to `sourceRoot`, or to the working directory if that is empty. Throws
/// kelvar_platform::ReadError when `sources.txt` is damaged.
[[nodiscard]] std::vector<std::string> editedSinceCollection(const std::string& result, const std::string& sourceRoot);

}  // namespace kelvar_tool
