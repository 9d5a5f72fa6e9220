#pragma once

#include <string>

#include "Model.h"
#include "Project.h"
#include "text/Terminal.h"

namespace kelvar_tool {

/// Prints all about the sites that `name` means: a sequence, a label, FILE:LINE, or all that is in a FILE. Throws
/// UsageError where it means nothing.
void showSite(const kelvar_page::Model& model, const Pieces& pieces, const std::string& name, const Terminal& terminal);

}  // namespace kelvar_tool
