#pragma once

#include <string>

#include "RuleSet.h"
#include "ScanPlan.h"

namespace kelvar_tool {

/// A line for each event, fields separated by tabs.
[[nodiscard]] std::string linesOf(const ScanPlan& plan);
/// The same as a JSON document.
[[nodiscard]] std::string jsonOf(const ScanPlan& plan);
/// The table of markers, fields separated by tabs.
[[nodiscard]] std::string tableOf(const std::vector<kelvar_sources::Rule>& rules);
/// Reports on standard error how many markers each rule found, how many have no kind, and what was skipped.
void sayCounts(const ScanPlan& plan, const ScanInput& input);

}  // namespace kelvar_tool
