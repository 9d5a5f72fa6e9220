#pragma once

#include <cstddef>
#include <vector>

#include "PlanFiles.h"

namespace kelvar_tool {

/// Finds sites of the database again among what was seen in the sources, with what is known of renamed files.
class SiteSearch {
 public:
  SiteSearch(const kelvar_platform::AnchoredSites& database, const PlanFiles& files);

  /// A list of sites that are looked for.
  struct Wanted {
    std::vector<kelvar_sources::KnownSite> known;
    std::vector<std::size_t> sites;  ///< the index of each in the database
  };

  /// Puts `wanted` in the order of places first. `seen` has to be in that order.
  [[nodiscard]] kelvar_sources::FindResult find(Wanted& wanted, const std::vector<kelvar_sources::SeenSite>& seen);

 private:
  void sort(Wanted& wanted) const;
  void askGit(const std::vector<kelvar_sources::KnownSite>& known);

  const kelvar_platform::AnchoredSites& database_;
  const PlanFiles& files_;
  const std::vector<bool> exist_;      // by file
  const std::vector<bool> unchanged_;  // by file
  std::vector<std::size_t> git_;       // by file: the one that it is by now
  std::vector<bool> asked_;            // by file
};

}  // namespace kelvar_tool
