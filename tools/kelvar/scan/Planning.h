#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Labels.h"
#include "Placement.h"
#include "PlanFiles.h"
#include "PlanRecord.h"
#include "PlanSites.h"
#include "SiteSearch.h"

namespace kelvar_tool {

/// What the steps of a plan work on.
struct Planning {
  Planning(const ScanInput& in, const kelvar_platform::AnchoredSites& sitesOfDatabase)
      : input(in),
        database(sitesOfDatabase),
        files(input, database),
        sites(input, database, files, labels),
        record(database),
        placement(database, files, sites, labels, record),
        search(database, files) {}

  const ScanInput& input;
  const kelvar_platform::AnchoredSites& database;
  kelvar_sources::Labels labels;
  PlanFiles files;
  PlanSites sites;
  PlanRecord record;
  Placement placement;
  SiteSearch search;
};

/// How a step is named for a site that is found in this file. That its file has another name decides before all that
/// its sites do.
[[nodiscard]] std::string stepName(kelvar_sources::Step step, bool inSameFile);

// The steps, in their order.

/// A person's place is taken as it is: where a marker of the kind is on the line, the site is that marker's; else what
/// is around the line is kept.
void takeTheirWord(Planning& plan);
/// Finds the sites that have markers again; answers the markers that are none of them, and that none of them may be.
[[nodiscard]] std::vector<std::size_t> findMarkers(Planning& plan);
/// Finds the lines again that persons marked, and that no marker is on.
void findLines(Planning& plan);

}  // namespace kelvar_tool
