#pragma once

#include <vector>

#include "digestio.h"

namespace kelvar_2_1_7 {

/// The details of a collection by place, those of one place as the collection lists them. Items that are made in this
/// order lie side by side on most walks over their list. All details are taken before any is asked for its place, and
/// all are asked, whatever they show; null ones stand at none.
[[nodiscard]] std::vector<digestio::SummaryDetail*> detailsByPlace(const digestio::SummaryCollection& collection);

}  // namespace kelvar_2_1_7
