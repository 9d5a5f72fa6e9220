#pragma once

#include <memory>
#include <string>

#include "Loading.h"
#include "Model.h"

namespace kelvar_tool {

/// The model behind `show`, `view` and the page, with the evidence beside the results. Evidence that cannot be read is
/// reported on standard error and is among the model's complaints.
[[nodiscard]] std::unique_ptr<kelvar_page::Model> modelOf(const Loaded& loaded, const Pieces& pieces,
                                                          const std::string& sourceRoot);

}  // namespace kelvar_tool
