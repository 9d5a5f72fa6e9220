#pragma once

#include <map>
#include <string>
#include <unordered_set>
#include <utility>

#include "Rules.h"

namespace kelvar_sources {

/// Gives labels to sites that have none in the source: `function: parallel`, then `function: parallel 2`. Reports take
/// sites of one label and kind for one, so no label is given twice.
class Labels {
 public:
  /// Marks a label as taken.
  void take(Kind kind, const std::string& label);
  /// The same; answers whether it was free.
  bool tryTake(Kind kind, const std::string& label);
  /// The smallest number that is free. `place` stands for the function where there is none: the leaf of the file.
  [[nodiscard]] std::string give(Kind kind, const std::string& function, const std::string& place);

 private:
  std::unordered_set<std::string> taken_;
  std::map<std::string, int> next_;  // by label without a number: what was tried already
};

}  // namespace kelvar_sources
