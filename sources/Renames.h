#pragma once

#include <cstddef>
#include <vector>

#include "FindAgain.h"

namespace kelvar_sources {

/// Finds renamed files. `exists` says by file number whether a file exists; `git` holds its new number according to
/// git, or its own. A vanished file is taken for a new file without known sites if they share at least half of the keys
/// of the smaller one; among several, for the one with the most common keys. Returns the new number of each file, or
/// its own.
[[nodiscard]] std::vector<std::size_t> renamedFiles(const std::vector<KnownSite>& known,
                                                    const std::vector<SeenSite>& seen, const std::vector<bool>& exists,
                                                    const std::vector<std::size_t>& git);

}  // namespace kelvar_sources
