#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Labels.h"
#include "PlanFiles.h"
#include "PlanRecord.h"
#include "PlanSites.h"

namespace kelvar_tool {

/// The steps that are this command's own; the others are kelvar_sources::Step.
constexpr const char* kByHand = "by-hand";
constexpr const char* kOpener = "opener";  // an end follows it
constexpr const char* kRenamedFile = "renamed-file";
constexpr const char* kNoStep = "-";

/// What becomes of a site once it is known where it is: its place, its label and its end.
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

  /// The site is this marker's from now on; its end follows.
  void putAtMarker(std::size_t site, std::size_t marker, const std::string& step);
  /// The site is on this line, which a person had marked.
  void putAtLine(std::size_t site, const kelvar_sources::FoundSite& line, std::size_t file, const std::string& step);
  /// The site stays where it was, since it cannot be told where it is.
  void leave(std::size_t site);
  /// Ends the life of a site, and keeps what was around it.
  void end(std::size_t site, const std::string& step);
  /// A marker that no site is becomes one, and so does its end.
  void addNew(std::size_t marker);

 private:
  using FoundSite = kelvar_sources::FoundSite;

  /// Puts a site where it was found; answers its label. `given` is the label that it has to have; empty: its own.
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
