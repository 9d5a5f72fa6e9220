#pragma once

#include <cstddef>
#include <vector>

#include "FindAgain.h"

namespace kelvar_sources {

/// Which files have another name by now. `exists` says by file number whether a file is there, `git` what is known of
/// its new name (its own number: nothing). A vanished file is a new one, in which no site was known, where the two
/// share at least half of the keys of the one that has fewer; of several, the one with the most in common.
/// Answers a number for each file, its own where it has no other name.
[[nodiscard]] std::vector<std::size_t> renamedFiles(const std::vector<KnownSite>& known,
                                                    const std::vector<SeenSite>& seen, const std::vector<bool>& exists,
                                                    const std::vector<std::size_t>& git);

}  // namespace kelvar_sources
