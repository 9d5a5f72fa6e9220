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

/// What sentences draw on besides the rows.
struct Grounds {
  const Overview& overview;
  const EvidenceIndex& evidence;
  const Sources& sources;
  const TimeUnits& units;
};

/// What a reader should know first. Each rule looks at every row and says at most one sentence, so there are at most
/// five:
///  - begin: of the sites without a race, the one by which the program gains most, from 1.05 on; without gains the one
///    that takes most of the time, from a tenth on, and without annotated sites the function.
///  - race: of the sites with a race and a gain from 1.05 on, the one that gains most.
///  - scalar: of the sites and loops that are not vectorised and take a tenth of the time or more, the one that takes
///    most.
///  - conflict: a site that is vectorised and races, or whose times differ by more than half between two analyses where
///    it takes a hundredth of the whole and both count the same.
///  - stale: how many sites do not match, and the one that takes most of the time.
class Findings {
 public:
  /// To be shown every row; keeps a handful.
  void look(const Site& site);
  /// How many rows a rule named beyond the one it says is part of its sentence.
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
