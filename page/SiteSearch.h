#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace kelvar_page {

/// What a name means: some sites, or a file, or neither.
struct Named {
  std::vector<Site> sites;
  std::string file;  ///< as rows name it; empty where sites are meant
};

/// Takes `name` for a sequence, then a label, then FILE:LINE, then FILE. Of FILE:LINE it answers the rows at the line,
/// else the innermost site around it. FILE is a path as rows have it, or an end of one (`pixels.cpp`).
[[nodiscard]] Named named(const Model& model, const std::string& name);

/// Labels of annotated sites that people may have meant, for a proposal.
[[nodiscard]] std::vector<std::string> labelsOf(const Model& model);

}  // namespace kelvar_page
