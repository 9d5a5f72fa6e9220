#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "Project.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

/// What could be read of a project, and a sentence for each thing that could not.
struct Loaded {
  boost::shared_ptr<kelvar::SummaryData> data;  ///< never null
  std::vector<std::string> complaints;          ///< `FILE: PLACE: what was expected`
};

/// Reads the pieces the way the suite does at the end of a collection. The annotations become those of the
/// process-wide scanner, so that their states are found.
[[nodiscard]] Loaded load(const Pieces& pieces);

}  // namespace kelvar_tool
