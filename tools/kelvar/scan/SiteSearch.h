#pragma once

#include <cstddef>
#include <vector>

#include "PlanFiles.h"

namespace kelvar_tool {

/// Finds sites of the database again among the places seen in the sources, also in renamed files.
class SiteSearch {
 public:
  SiteSearch(const kelvar_platform::AnchoredSites& database, const PlanFiles& files);

  /// The sites to find.
  struct Wanted {
    std::vector<kelvar_sources::KnownSite> known;
    std::vector<std::size_t> sites;  ///< the index of each in the database
  };

  /// Sorts `wanted` by place first. Requires that `seen` is sorted by place.
  [[nodiscard]] kelvar_sources::FindResult find(Wanted& wanted, const std::vector<kelvar_sources::SeenSite>& seen);

 private:
  void sort(Wanted& wanted) const;
  void askGit(const std::vector<kelvar_sources::KnownSite>& known);

  const kelvar_platform::AnchoredSites& database_;
  const PlanFiles& files_;
  const std::vector<bool> exist_;      // by file
  const std::vector<bool> unchanged_;  // by file
  std::vector<std::size_t> git_;       // by file: the file that it is now, according to git
  std::vector<bool> asked_;            // by file: whether git was asked
};

}  // namespace kelvar_tool
