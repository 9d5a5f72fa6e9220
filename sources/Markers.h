#pragma once

#include "SourceScan.h"

namespace kelvar_sources {

/// The markers of a text in C or C++.
[[nodiscard]] FileSites markersIn(std::string_view source, const RuleSet& rules);
[[nodiscard]] std::vector<FoundSite> codeLinesIn(std::string_view source);

}  // namespace kelvar_sources
