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

/// A project for people: the data, and all that one walk over its rows finds out.
struct Model {
  /// Visits every row once, in any ordering. Requires that nothing is hidden. `complaintsOfLoading` are sentences about
  /// what could not be read.
  Model(boost::shared_ptr<kelvar::SummaryData> summary, EvidenceIndex evidenceOfResults, const std::string& sourceRoot,
        std::vector<std::string> complaintsOfLoading, TimeUnits unitsOfTimes = {});

  boost::shared_ptr<kelvar::SummaryData> data;
  EvidenceIndex evidence;
  Sources sources;
  std::vector<std::string> complaints;
  std::string timeSource = {};  ///< which tool measured the times, as a phrase; empty when unknown
  TimeUnits units;
  Findings rules;
  Overview overview;  // its construction calls `rules`, which must exist before
  std::vector<Finding> findings;
};

/// `yes`, `no` or `partly`, and the most frequent reason or width that the compiler gave; empty when unknown.
[[nodiscard]] std::string vectorisedText(const Site& site, const EvidenceIndex& evidence);
/// `constant 83%`; empty when no access was seen.
[[nodiscard]] std::string strideText(const Site& site);
/// `2 races`, `1 lock order`, `none`; empty when no analysis looked for races.
[[nodiscard]] std::string racesText(const Site& site);

}  // namespace kelvar_page
