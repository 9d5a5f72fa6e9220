#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "EvidenceIndex.h"
#include "Figures.h"
#include "Findings.h"
#include "Overview.h"
#include "Sources.h"
#include "kelvar/SummaryData.h"

namespace kelvar_page {

/// A project as people read it: the data with what one walk over all its rows tells.
struct Model {
  /// Looks at every row once, whatever the view's ordering; nothing may be hidden. `complaints` are the sentences on
  /// what could not be read.
  Model(boost::shared_ptr<kelvar::SummaryData> summary, EvidenceIndex evidenceOfResults, const std::string& sourceRoot,
        std::vector<std::string> complaintsOfLoading, TimeUnits unitsOfTimes = {});

  boost::shared_ptr<kelvar::SummaryData> data;
  EvidenceIndex evidence;
  Sources sources;
  std::vector<std::string> complaints;
  std::string timeSource = {};  ///< a sentence on what measured the times; empty where nobody says
  TimeUnits units;
  Findings rules;
  Overview overview;  // reads the rules' rows, so they come first
  std::vector<Finding> findings;
};

/// The commonest reason or width that a tool gave for the site's loop; `yes`, `no`, `partly`, or empty.
[[nodiscard]] std::string vectorisedText(const Site& site, const EvidenceIndex& evidence);
/// `constant 83%`; empty where no access was seen.
[[nodiscard]] std::string strideText(const Site& site);
/// `2 races`, `1 lock order`, `none`; empty where nobody looked.
[[nodiscard]] std::string racesText(const Site& site);

}  // namespace kelvar_page
