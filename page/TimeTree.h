#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Overview.h"

namespace kelvar_page {

/// A region or function with a time, and its lines.
struct TimedPlace {
  std::string key;
  std::string label;
  double time = 0;  ///< inclusive for a region, exclusive for a function
  int first = 0;    ///< the first line
  int last = 0;     ///< the last line of a region with an end; else 0
  bool function = false;
  bool races = false;
};

/// A box in the picture of where time goes. Boxes inside are part of it, and boxes side by side add up.
struct TimeNode {
  std::string key;
  std::string label;
  double time = 0;  ///< including the boxes inside
  double own = 0;   ///< without the boxes inside
  bool races = false;
  std::vector<TimeNode> within = {};
};

struct TimeFile {
  std::string_view file;  ///< valid as long as the overview
  double time = 0;        ///< of all nodes, those left out included
  std::vector<TimeNode> nodes;
};

/// Nests the places of one file, each in the innermost place around it, longest first. A region reaches to its last
/// line; a function to the next function, or to the end of the region that it begins in. The time of regions in a
/// function counts once: in the regions, and only the rest as the function's own.
[[nodiscard]] std::vector<TimeNode> nestedPlaces(std::vector<TimedPlace> places);

/// All files with a time, longest first.
[[nodiscard]] std::vector<TimeFile> timeTreeOf(const Overview& overview);

}  // namespace kelvar_page
