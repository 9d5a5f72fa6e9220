#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace kelvar_page {

/// What a name refers to: sites, a file, or nothing.
struct Named {
  std::vector<Site> sites;
  std::string file;  ///< as rows name it; empty if the name refers to sites or nothing
};

/// Tries `name` as a sequence, a label, FILE:LINE, and FILE, in this order. FILE:LINE finds the rows at the line, else
/// the innermost site around it. FILE is a path of a row or the tail of one (`pixels.cpp`).
[[nodiscard]] Named named(const Model& model, const std::string& name);

/// The labels of all annotated sites, for `did you mean`.
[[nodiscard]] std::vector<std::string> labelsOf(const Model& model);

}  // namespace kelvar_page
