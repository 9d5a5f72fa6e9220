#pragma once

#include <map>
#include <string>
#include <unordered_set>
#include <utility>

#include "Rules.h"

namespace kelvar_sources {

/// Makes labels for sites without one in the source: `function: parallel`, then `function: parallel 2`. No label is
/// given twice, since reports treat sites with equal label and kind as the same.
class Labels {
 public:
  /// Marks a label as taken.
  void take(Kind kind, const std::string& label);
  /// The same; returns whether it was free.
  bool tryTake(Kind kind, const std::string& label);
  /// A label with the smallest free number. Without a function, the label begins with `place`, the file's name.
  [[nodiscard]] std::string give(Kind kind, const std::string& function, const std::string& place);

 private:
  std::unordered_set<std::string> taken_;
  std::map<std::string, int> next_;  // by label without a number: what was tried already
};

}  // namespace kelvar_sources
