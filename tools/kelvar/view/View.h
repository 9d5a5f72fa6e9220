#pragma once

#include "Subcommand.h"

namespace kelvar_tool {

/// `kelvar view`: serves the page of a project on the loopback interface, and opens the browser.
void addView(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
