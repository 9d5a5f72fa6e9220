#pragma once

#include <string>
#include <vector>

#include "AnchoredSites.h"

namespace kelvar_tool {

/// Keeps the source files as they were when a result was collected, in `sources.txt` in its directory: a line for each,
/// its digest, its count of lines and its name. Throws kelvar_platform::ReadError where it cannot be written.
void writeCollectedSources(const std::string& result, const std::vector<kelvar_platform::SourceRow>& sources);

/// The files of a result that are not as they were when it was collected, as the database names them; none where
/// nothing was kept. Names are below `sourceRoot`, or the working directory. Throws kelvar_platform::ReadError where
/// what was kept is damaged.
[[nodiscard]] std::vector<std::string> editedSinceCollection(const std::string& result, const std::string& sourceRoot);

}  // namespace kelvar_tool
