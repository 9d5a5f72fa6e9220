#pragma once

#include <string>
#include <vector>

#include "Recipes.h"

namespace kelvar_tool {

/// Shell commands that run and import all possible analyses, a line each. Tools write into `folder`.
[[nodiscard]] std::string commandText(const std::vector<Recipe>& plan, const Wanted& wanted, const std::string& program,
                                      const std::string& folder);

}  // namespace kelvar_tool
