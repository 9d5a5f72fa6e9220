#pragma once

#include "SummaryItemImpl.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// Whether the leaf names of two places' files are the same bytes. The sources may lie elsewhere by now, so directories
/// do not count.
[[nodiscard]] bool sameLeaf(const sitenotes::locator_t& a, const sitenotes::locator_t& b);

/// Whether a join may ever find that the item and another one stand for one site: hot spots and loops that no
/// annotation names stay what they are.
[[nodiscard]] bool mayMatch(const SummaryItemImpl& item) noexcept;

/// Whether both are annotated sites of one annotation kind: only those ever stand for one site without a handle.
[[nodiscard]] bool sameSortOfSite(const SummaryItemImpl& a, const SummaryItemImpl& b);

/// Whether an analysis that lists each site once has a detail for both: then they are two sites.
[[nodiscard]] bool seenApart(const SummaryItemImpl& a, const SummaryItemImpl& b);

}  // namespace kelvar_2_1_7
