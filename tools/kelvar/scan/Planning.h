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

/// The state shared by the steps of a plan.
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

/// The name of the step that found a site. If its file was renamed, that is named instead.
[[nodiscard]] std::string stepName(kelvar_sources::Step step, bool inSameFile);

// The steps, in their order.

/// Accepts the places that were given by hand. A marker of the kind on the line becomes the site's; otherwise the
/// surroundings of the line are recorded.
void acceptManualPlaces(Planning& plan);
/// Finds the sites with markers again. Returns the markers that certainly belong to no known site.
[[nodiscard]] std::vector<std::size_t> findMarkers(Planning& plan);
/// Finds the lines again that were marked by hand and have no marker.
void findLines(Planning& plan);

}  // namespace kelvar_tool
