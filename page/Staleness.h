#pragma once

#include <optional>
#include <string>

#include "Overview.h"
#include "Site.h"
#include "Sources.h"

namespace kelvar_page {

/// Why a row's figures may not be those of the source as it is now.
struct Staleness {
  char mark = '~';   ///< `~` moved, `?` nothing to match, `!` the source is gone
  std::string word;  ///< for a table's cell: `moved +4`, `no site`
  std::string why;   ///< a sentence without its end
};

/// What is stale about the site; nothing where all matches, and where no site is annotated, so that none could. Asked
/// for each row that is shown. Whatever else comes to know of staleness answers here.
[[nodiscard]] std::optional<Staleness> stalenessOf(const Site& site, const Overview& overview, const Sources& sources);

/// How the analysis' figures came to this row or not, as a sentence.
[[nodiscard]] std::string whyMatched(const Site& site, digestio::SummaryDataKind kind);

}  // namespace kelvar_page
