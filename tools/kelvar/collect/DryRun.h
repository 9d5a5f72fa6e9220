#pragma once

#include <string>
#include <vector>

#include "Recipes.h"

namespace kelvar_tool {

/// The commands that make and import all analyses that are possible, a line each, as a shell takes them. Tools write
/// into `folder`.
[[nodiscard]] std::string commandText(const std::vector<Recipe>& plan, const Wanted& wanted, const std::string& program,
                                      const std::string& folder);

}  // namespace kelvar_tool
