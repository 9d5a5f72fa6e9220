#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar annotate`: edits an annotation database, one edit per call.
void addAnnotate(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
