#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "report/Columns.h"

namespace kelvar_tool {

/// Looks for sites that may have been confused because the library compares only the leaf of a path, and several files
/// have that leaf. A path that is the end of another (`solver.cpp`, `src/solver.cpp`, `/home/me/src/solver.cpp`) may be
/// the same file, and is no reason to warn.
class SharedLeaves {
 public:
  void look(const Row& row);
  /// A warning for each site that was joined across two files, and for each leaf whose sites could be.
  [[nodiscard]] std::vector<std::string> warnings() const;

 private:
  using Sort = std::pair<sitenotes::annotation_t::kind_t, std::string_view>;  // annotation kind and leaf

  std::vector<std::string> folded_;
  std::map<Sort, std::vector<std::string_view>> files_;  // of annotated sites; texts of paths are never freed
};

}  // namespace kelvar_tool
