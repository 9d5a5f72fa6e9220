#pragma once

#include <optional>
#include <string>

#include "Overview.h"
#include "Site.h"
#include "Sources.h"

namespace kelvar_page {

/// Why a row's figures may not belong to the present source.
struct Staleness {
  char mark = '~';   ///< `~` moved, `?` nothing to match, `!` the line is past the end of the source
  std::string word;  ///< for a table's cell: `moved +4`, `no site`
  std::string why;   ///< a sentence without a full stop
};

/// What is stale about the site; nothing if it matches, or if the project has no living annotation. Every view of
/// staleness goes through this function.
[[nodiscard]] std::optional<Staleness> stalenessOf(const Site& site, const Overview& overview, const Sources& sources);

/// Why the analysis' figures belong to this row or not, as a sentence.
[[nodiscard]] std::string whyMatched(const Site& site, digestio::SummaryDataKind kind);

}  // namespace kelvar_page
