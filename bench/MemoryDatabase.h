#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>

#include "GeneratedProject.h"
#include "sitenotes.h"

namespace kelvar_bench {

/// A project's annotations as of `revision`, held in memory: what the stages cost beyond the reading of a file.
[[nodiscard]] boost::shared_ptr<sitenotes::database_t> memoryDatabase(const GeneratedProject& project,
                                                                      std::size_t revision);

}  // namespace kelvar_bench
