/// The names of kinds and statuses in the reports. For output only: nothing parses them.
#pragma once

#include <array>

#include "kinds.h"

namespace kelvar_2_1_7 {

/// By analysis kind.
inline constexpr std::array<const char*, kAnalysisKindCount> kKindNames{"survey", "surveyvectorization", "suitability",
                                                                        "dependencies", "map"};

/// By SummaryDataStatus.
inline constexpr std::array<const char*, 6> kStatusNames{
    "not present", "unusable", "no match current", "approximate match current", "exact match current", "current"};

}  // namespace kelvar_2_1_7
