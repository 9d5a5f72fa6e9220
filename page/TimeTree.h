#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Overview.h"

namespace kelvar_page {

/// A region or a function with a time, as it lies in its file.
struct TimedPlace {
  std::string key;
  std::string label;
  double time = 0;  ///< a region's with all that runs within; a function's own
  int first = 0;    ///< line
  int last = 0;     ///< of a region that is closed; else 0: it holds nothing
  bool function = false;
  bool races = false;
};

/// A box in the picture of where time goes. What lies within is part of it, so boxes that lie side by side add up.
struct TimeNode {
  std::string key;
  std::string label;
  double time = 0;  ///< seconds, with what lies within
  double own = 0;   ///< seconds without it
  bool races = false;
  std::vector<TimeNode> within = {};
};

struct TimeFile {
  std::string_view file;  ///< as long as the overview
  double time = 0;        ///< of all nodes, those left out included
  std::vector<TimeNode> nodes;
};

/// The places of one file, each within the innermost one that holds it, longest first. A region reaches to its last
/// line; a function to the next one, or to the end of the region that it begins in. A function that holds regions has
/// their time once: in them as far as it goes, the rest as its own.
[[nodiscard]] std::vector<TimeNode> nestedPlaces(std::vector<TimedPlace> places);

/// All files with a time, longest first.
[[nodiscard]] std::vector<TimeFile> timeTreeOf(const Overview& overview);

}  // namespace kelvar_page
