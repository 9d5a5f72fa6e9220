#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "AnchoredSites.h"
#include "Wanted.h"

namespace kelvar_tool {

/// The state of the sources before the program runs.
struct SourceState {
  std::set<std::int64_t> stale;                   ///< sites that are no longer on their lines, and so get no figures
  std::vector<kelvar_platform::SourceRow> files;  ///< the files with sites, as they are now
};

/// Prints which annotations are out of date and which markers no scan has found yet, with the command to run: otherwise
/// the figures of a long run would be lost. `directory` is that of the project or the run.
[[nodiscard]] SourceState lookAtSources(const Wanted& wanted, const std::string& directory);

}  // namespace kelvar_tool
