#pragma once

#include <string>

#include "PerKind.h"

namespace kelvar_tool {

/// What a report is made of, as paths; an empty one is a piece that is not there.
struct Pieces {
  std::string annotations;
  kelvar_2_1_7::PerKind<std::string> results;

  [[nodiscard]] bool none() const noexcept;
};

/// The path made lexically normal, without a trailing slash, and no more absolute than it was.
[[nodiscard]] std::string normalPath(const std::string& path);

[[nodiscard]] bool isDirectory(const std::string& path);

/// What stands in the project directory. What is there but cannot be looked at stands there too: that it cannot be
/// read comes to light when it is. A survey/ that only carries the sub-result is no survey result.
[[nodiscard]] Pieces standingIn(const std::string& project);

/// The pieces of `project`, save those that `named` has elsewhere.
[[nodiscard]] Pieces overlaid(Pieces project, const Pieces& named);

}  // namespace kelvar_tool
