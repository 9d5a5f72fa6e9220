#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace kelvar_import {

/// Where loops end in the sources that are at hand.
class LoopEnds {
 public:
  /// The last line of the loop that begins in the line, at the column or before it. 0 where no such loop stands there.
  [[nodiscard]] int lastLine(const std::string& file, int line, int column);

 private:
  struct Loop {
    int line = 0;
    int column = 0;
    int last = 0;
  };
  [[nodiscard]] static std::vector<Loop> loopsOf(const std::string& file);

  std::unordered_map<std::string, std::vector<Loop>> files_;
};

}  // namespace kelvar_import
