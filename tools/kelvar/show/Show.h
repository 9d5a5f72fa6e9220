#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar show`: a project, one of its sites or one of its files, for people at a terminal.
void addShow(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
