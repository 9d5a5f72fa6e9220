#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Labels.h"
#include "PlanFiles.h"
#include "PlanRecord.h"
#include "PlanSites.h"

namespace kelvar_tool {

/// Names of steps that only this command has; for the others see kelvar_sources::Step.
constexpr const char* kByHand = "by-hand";
constexpr const char* kOpener = "opener";  // an end follows it
constexpr const char* kRenamedFile = "renamed-file";
constexpr const char* kNoStep = "-";

/// Carries out decisions about sites: updates place, label and end, and records the edits.
class Placement {
 public:
  Placement(const kelvar_platform::AnchoredSites& database, PlanFiles& files, const PlanSites& sites,
            kelvar_sources::Labels& labels, PlanRecord& record)
      : database_(database),
        files_(files),
        sites_(sites),
        labels_(labels),
        record_(record),
        next_(database.nextSequence) {}

  /// The site belongs to this marker from now on; its end is moved along.
  void putAtMarker(std::size_t site, std::size_t marker, const std::string& step);
  /// The site, which was placed on a line by hand, is on this line now.
  void putAtLine(std::size_t site, const kelvar_sources::FoundSite& line, std::size_t file, const std::string& step);
  /// Leaves the site where it was, since several places fit equally well.
  void leave(std::size_t site);
  /// Marks the site as gone, but keeps its anchor, so that it can be revived.
  void end(std::size_t site, const std::string& step);
  /// Makes new sites of a marker and its end.
  void addNew(std::size_t marker);

 private:
  using FoundSite = kelvar_sources::FoundSite;

  /// Moves a site to where it was found and returns its label. `given` is the label to set; empty: decide by labelOf().
  std::string put(std::size_t site, const FoundSite& found, std::size_t file, const std::string& step,
                  const std::string& given);
  std::int64_t add(const FoundSite& found, std::size_t file, const std::string& label, const std::string& step);
  [[nodiscard]] std::string labelOf(const kelvar_platform::AnchoredSite& one, const FoundSite& found, std::size_t file);
  void sayIfUnclosed(std::int64_t sequence, const std::string& label, const Marker& marker);

  const kelvar_platform::AnchoredSites& database_;
  PlanFiles& files_;
  const PlanSites& sites_;
  kelvar_sources::Labels& labels_;
  PlanRecord& record_;
  std::int64_t next_;
};

}  // namespace kelvar_tool
