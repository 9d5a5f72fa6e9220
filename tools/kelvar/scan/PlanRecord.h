#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "ScanPlan.h"

namespace kelvar_tool {

[[nodiscard]] kelvar_sources::Anchor anchorOf(const kelvar_platform::AnchorRow& row);
[[nodiscard]] kelvar_platform::AnchorRow rowOf(const kelvar_sources::Anchor& anchor);

/// Collects the events and edits of a plan, in the order of the decisions.
class PlanRecord {
 public:
  using Site = kelvar_platform::Site;

  explicit PlanRecord(const kelvar_platform::AnchoredSites& database) : database_(database) {}

  /// Adds an event. `before` and `now` are null when the site had or has no place.
  void say(ScanEvent::What what, const Site& site, const Site* before, const Site* now, const std::string& step);
  /// Adds a new site.
  void add(const Site& site, const kelvar_sources::Anchor& anchor);
  /// Appends an edit of a site with its new anchor; without one, the old anchor stays.
  void append(const Site& site, const std::optional<kelvar_sources::Anchor>& anchor);
  /// Keeps what is around a site, which stays as it is.
  void anchor(const Site& site, const kelvar_sources::Anchor& anchor);
  /// The same of one that a person removed: its anchor goes on naming an older edit, by which that is seen.
  void anchorRemoved(std::size_t index, const kelvar_sources::Anchor& anchor);

  /// Counts a site that a person placed, and that is found again from now on.
  void countAnchored() { ++plan_.anchored; }
  [[nodiscard]] kelvar_platform::AnchoredEdits& edits() noexcept { return plan_.edits; }
  [[nodiscard]] ScanPlan take() noexcept { return std::move(plan_); }

 private:
  const kelvar_platform::AnchoredSites& database_;
  ScanPlan plan_;
};

}  // namespace kelvar_tool
