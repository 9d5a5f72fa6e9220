#pragma once

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// Whether two neighbours in a result's list are one site.
[[nodiscard]] bool isOneSiteOfResult(const SummaryItemImpl& a, const SummaryItemImpl& b);
/// Whether two neighbours in the joined list are one site. There labels decide too, and one of two places may be null.
[[nodiscard]] bool isOneJoinedSite(const SummaryItemImpl& a, const SummaryItemImpl& b);

}  // namespace kelvar_2_1_7
