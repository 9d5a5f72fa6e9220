#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "Project.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

/// What could be read of a project, and a sentence for each piece that could not.
struct Loaded {
  boost::shared_ptr<kelvar::SummaryData> data;  ///< not null
  std::vector<std::string> complaints;          ///< `FILE: PLACE: what was expected`
};

/// Reads the pieces as the suite does at the end of a collection. The annotation database becomes that of the
/// process-wide scanner, so that its states are found.
[[nodiscard]] Loaded load(const Pieces& pieces);

}  // namespace kelvar_tool
