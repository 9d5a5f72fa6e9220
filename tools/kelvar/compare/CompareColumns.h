#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CompareRuns.h"
#include "text/Cell.h"

namespace kelvar_tool {

/// One value of each compared site: a column of CSV, and the path of a value in JSON. Programs read these names.
struct CompareColumn {
  std::string_view name;  ///< `before.time`: what is behind the dot is a key of the object before it
  Cell (*value)(const ComparedSides& sides, const kelvar_compare::SiteChange& site);
};
[[nodiscard]] const std::vector<CompareColumn>& compareColumns();

/// `no`, `partly`, `yes`; empty where nothing says.
[[nodiscard]] std::string_view vectorisedName(kelvar_compare::Vectorised vectorised) noexcept;
/// `parallel`, `function`, `loop`.
[[nodiscard]] std::string compareKindName(const kelvar_compare::Identity& site);
/// As the newest of its runs says it, of AFTER where AFTER has the site.
[[nodiscard]] const kelvar_compare::Identity& identityOf(const ComparedSides& sides,
                                                         const kelvar_compare::SiteChange& site);

/// What `--fail-on` can name.
struct Gate {
  std::string_view name;
  std::string_view what;  ///< before `at 2 sites`
  bool (*falls)(const kelvar_compare::SiteChange& site);
  /// What was expected, where too little was measured for the gate to fall; null: any result will do.
  std::string (*lacks)(const ComparedSides& sides) = nullptr;
};
[[nodiscard]] const std::vector<Gate>& gates();

}  // namespace kelvar_tool
