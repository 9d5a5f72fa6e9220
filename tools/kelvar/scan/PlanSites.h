#pragma once

#include <cstddef>
#include <vector>

#include "Labels.h"
#include "PlanFiles.h"

namespace kelvar_tool {

/// What a scan does with a site of the database.
enum class Group {
  none,     ///< leaves it alone
  marker,   ///< finds its marker again
  line,     ///< finds its line again, which a person marked
  fresh,    ///< takes a person's word for its place
  dead,     ///< revives it where its marker is back
  removed,  ///< keeps it away, since a person removed it, wherever its marker goes
  end,      ///< lets it follow what it ends
};

[[nodiscard]] bool endsRegion(kelvar_sources::Kind kind) noexcept;

/// The sites of the database in their groups, each beginning with its end, and the markers that they have. All are
/// indices of sites.
class PlanSites {
 public:
  /// Takes the labels of living sites.
  PlanSites(const ScanInput& input, const kelvar_platform::AnchoredSites& database, PlanFiles& files,
            kelvar_sources::Labels& labels);

  [[nodiscard]] std::size_t size() const noexcept { return groups_.size(); }
  [[nodiscard]] Group group(std::size_t site) const { return groups_[site]; }
  /// The site that ends this one; kNothing where there is none.
  [[nodiscard]] std::size_t end(std::size_t site) const { return ends_[site]; }
  /// The marker that the site is; kNothing where it is none.
  [[nodiscard]] std::size_t marker(std::size_t site) const { return markers_[site]; }
  void setMarker(std::size_t site, std::size_t marker) { markers_[site] = marker; }
  /// For each site, whether it ends one that is a marker, or that may turn out to be one.
  [[nodiscard]] std::vector<bool> followers() const;

 private:
  [[nodiscard]] Group groupOf(const kelvar_platform::AnchoredSite& one, bool isOurs) const;
  /// A scan gives a marker and its end two sequences in a row.
  void pairNeighbours(std::vector<bool>& paired);
  void pairByLabel(const std::vector<bool>& paired);

  const kelvar_platform::AnchoredSites& database_;
  const PlanFiles& files_;
  std::vector<Group> groups_;
  std::vector<std::size_t> ends_;
  std::vector<std::size_t> markers_;
};

}  // namespace kelvar_tool
