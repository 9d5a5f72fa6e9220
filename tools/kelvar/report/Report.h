#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar report`: joins the results of a project with its annotations and prints the view.
void addReport(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
