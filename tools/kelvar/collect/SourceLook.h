#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "AnchoredSites.h"
#include "Wanted.h"

namespace kelvar_tool {

/// What is known of the sources before a program runs.
struct LookedAt {
  std::set<std::int64_t> stale;                   ///< sites that are no longer on their lines: no figure is theirs
  std::vector<kelvar_platform::SourceRow> files;  ///< those with sites, as they are
};

/// Says in a few lines which annotations are behind the sources, and which markers no scan has taken, with the command
/// that puts it right: figures of a long run would go nowhere. `directory` is that of the project or the run.
[[nodiscard]] LookedAt lookAtSources(const Wanted& wanted, const std::string& directory);

}  // namespace kelvar_tool
