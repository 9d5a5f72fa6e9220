#pragma once

#include "SourceScan.h"

namespace kelvar_sources {

/// The markers of a text in Fortran.
[[nodiscard]] FileSites fortranMarkersIn(std::string_view source, bool fixedForm, const RuleSet& rules);
[[nodiscard]] std::vector<FoundSite> fortranCodeLinesIn(std::string_view source, bool fixedForm);

}  // namespace kelvar_sources
