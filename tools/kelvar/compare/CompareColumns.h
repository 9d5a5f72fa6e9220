#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CompareRuns.h"
#include "text/Cell.h"

namespace kelvar_tool {

/// One value of each compared site: a column of CSV, and the path of a value in JSON. Programs read these names.
struct CompareColumn {
  std::string_view name;  ///< `before.time`: in JSON, the key `time` of the object `before`
  Cell (*value)(const ComparedSides& sides, const kelvar_compare::SiteChange& site);
};
[[nodiscard]] const std::vector<CompareColumn>& compareColumns();

/// `no`, `partly`, `yes`; empty when unknown.
[[nodiscard]] std::string_view vectorisedName(kelvar_compare::Vectorised vectorised) noexcept;
/// `parallel`, `function`, `loop`.
[[nodiscard]] std::string compareKindName(const kelvar_compare::Identity& site);
/// The site's identity in the newest run of AFTER, or of BEFORE if AFTER lacks the site.
[[nodiscard]] const kelvar_compare::Identity& identityOf(const ComparedSides& sides,
                                                         const kelvar_compare::SiteChange& site);

/// A condition that `--fail-on` can name.
struct Gate {
  std::string_view name;
  std::string_view what;  ///< a phrase that fits before `at 2 sites`
  bool (*falls)(const kelvar_compare::SiteChange& site);
  /// What would have to be measured for this gate to work; an empty text when it was measured. Null: always works.
  std::string (*lacks)(const ComparedSides& sides) = nullptr;
};
[[nodiscard]] const std::vector<Gate>& gates();

}  // namespace kelvar_tool
