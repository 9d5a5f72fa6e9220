#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar annotate`: edits an annotation database, one edit a call.
void addAnnotate(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
