#pragma once

#include <string>

#include "PerKind.h"

namespace kelvar_tool {

/// The pieces of a project, as paths; empty for a missing piece.
struct Pieces {
  std::string annotations;
  kelvar_2_1_7::PerKind<std::string> results;

  [[nodiscard]] bool none() const noexcept;
};

/// The path in lexically normal form, without a trailing slash; a relative path stays relative.
[[nodiscard]] std::string normalPath(const std::string& path);

[[nodiscard]] bool isDirectory(const std::string& path);

/// The pieces that exist in the project directory. A piece that cannot be examined counts as existing: the failure is
/// reported when it is read. A survey/ that holds only the sub-result is not a survey result.
[[nodiscard]] Pieces piecesIn(const std::string& project);

/// The pieces of `project`, except for those that `named` gives another path.
[[nodiscard]] Pieces overlaid(Pieces project, const Pieces& named);

}  // namespace kelvar_tool
