#pragma once

#include <optional>
#include <string>
#include <vector>

#include "EvidenceIndex.h"
#include "Overview.h"
#include "Staleness.h"

namespace kelvar_page {

/// One sentence that stands out, and the site that it is about.
struct Finding {
  std::string rule;  ///< `begin`, `race`, `scalar`, `conflict`, `stale`
  std::string sentence;
  std::optional<Site> site;
};

/// The data that sentences use besides the rows.
struct Grounds {
  const Overview& overview;
  const EvidenceIndex& evidence;
  const Sources& sources;
  const TimeUnits& units;
};

/// The findings that a reader should see first. Each rule looks at every row and gives at most one sentence, so there
/// are at most five:
///  - begin: the site without a race that makes the program fastest, if by 1.05 or more. If no site has a gain, the
///    site with the most time, if it is a tenth or more; if no site is annotated, the function with the most time.
///  - race: the site with the greatest gain among those with a race.
///  - scalar: the site or loop with the most time, a tenth or more, among those that are not vectorised.
///  - conflict: a site that is vectorised and has a race, or whose times by two analyses in one unit differ by more
///    than half, if it takes a hundredth of the time or more. A race that it names without a gain is not named twice.
///  - stale: how many sites do not match, and the one with the most time.
class Findings {
 public:
  /// Called with every row; keeps only the best row of each rule.
  void look(const Site& site);
  /// The findings, in the order of the rules. A sentence also says to how many other rows its rule applies.
  [[nodiscard]] std::vector<Finding> sentences(const Grounds& grounds) const;

 private:
  struct Best {
    std::optional<Site> site;
    double key = 0;
    std::int64_t count = 0;

    void offer(const Site& candidate, double by);
  };

  Best gain_;
  Best longest_;
  Best function_;
  Best race_;
  Best scalar_;
  Best vectorisedRace_;
  Best times_;
  Best moved_;
  Best missing_;
};

}  // namespace kelvar_page
