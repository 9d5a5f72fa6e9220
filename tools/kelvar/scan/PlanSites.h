#pragma once

#include <cstddef>
#include <vector>

#include "Labels.h"
#include "PlanFiles.h"

namespace kelvar_tool {

/// How a scan treats a site of the database.
enum class Group {
  none,     ///< leave it alone
  marker,   ///< find its marker again
  line,     ///< find its line again; it was placed by hand
  fresh,    ///< accept its place, given by hand since the last scan
  dead,     ///< revive it if its marker is back
  removed,  ///< removed by hand: keep it removed wherever its marker goes
  end,      ///< an end: move it along with its site
};

/// The sites of the database by index: the group of each, the end that belongs to it, and its marker.
class PlanSites {
 public:
  /// Also registers the labels of all living sites in `labels`.
  PlanSites(const ScanInput& input, const kelvar_platform::AnchoredSites& database, PlanFiles& files,
            kelvar_sources::Labels& labels);

  [[nodiscard]] std::size_t size() const noexcept { return groups_.size(); }
  [[nodiscard]] Group group(std::size_t site) const { return groups_[site]; }
  /// The site that ends this one; kNothing when there is none.
  [[nodiscard]] std::size_t end(std::size_t site) const { return ends_[site]; }
  /// The marker of the site; kNothing when it has none.
  [[nodiscard]] std::size_t marker(std::size_t site) const { return markers_[site]; }
  void setMarker(std::size_t site, std::size_t marker) { markers_[site] = marker; }
  /// For each site, whether it is the end of one that has a marker, or is searched for by one.
  [[nodiscard]] std::vector<bool> followers() const;

 private:
  [[nodiscard]] Group groupOf(const kelvar_platform::AnchoredSite& one, bool isOurs) const;
  /// A scan gives a site and its end consecutive sequences.
  void pairNeighbours(std::vector<bool>& paired);
  void pairByLabel(const std::vector<bool>& paired);

  const kelvar_platform::AnchoredSites& database_;
  const PlanFiles& files_;
  std::vector<Group> groups_;
  std::vector<std::size_t> ends_;
  std::vector<std::size_t> markers_;
};

}  // namespace kelvar_tool
