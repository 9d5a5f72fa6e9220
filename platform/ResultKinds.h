#pragma once

#include <array>
#include <string_view>

#include "digestio.h"

namespace kelvar_platform {

/// The names of `dataKind` in a collection, by SummaryDataKind.
inline constexpr std::array<std::string_view, digestio::kSummaryDataKindCount> kDataKindNames{
    "survey", "surveyvectorization", "suitability", "dependencies", "map"};

}  // namespace kelvar_platform
