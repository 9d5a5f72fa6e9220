#pragma once

#include <string>

#include "Model.h"
#include "Project.h"
#include "text/Terminal.h"

namespace kelvar_tool {

/// Prints everything about the sites that `name` refers to: a sequence, a label, FILE:LINE, or a whole FILE. Throws
/// UsageError when there is no such site.
void showSite(const kelvar_page::Model& model, const Pieces& pieces, const std::string& name, const Terminal& terminal);

}  // namespace kelvar_tool
