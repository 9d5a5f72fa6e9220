#pragma once

#include <memory>
#include <string>

#include "Loading.h"
#include "Model.h"

namespace kelvar_tool {

/// The project as people read it, with the evidence beside its results. What of that cannot be read is said and is
/// among the model's complaints.
[[nodiscard]] std::unique_ptr<kelvar_page::Model> modelOf(const Loaded& loaded, const Pieces& pieces,
                                                          const std::string& sourceRoot);

}  // namespace kelvar_tool
