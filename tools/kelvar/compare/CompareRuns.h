#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Comparison.h"
#include "Figures.h"
#include "Pairing.h"
#include "kinds.h"

namespace kelvar_tool {

/// Reads runs and projects one after the other, and keeps of each only what a comparison needs.
class ComparedRuns {
 public:
  ComparedRuns();
  ~ComparedRuns();
  ComparedRuns(const ComparedRuns&) = delete;  // what it hands out refers to it
  ComparedRuns& operator=(const ComparedRuns&) = delete;

  /// The runs in these directories as one side, which `argument` names. What could not be read is said, and is among
  /// the complaints; so is a side without any result.
  [[nodiscard]] kelvar_compare::Side read(const char* argument, const std::vector<std::string>& directories);

  [[nodiscard]] kelvar_compare::AnchorsOf anchors();
  /// Whether the annotation lives, disabled or not, in a database that the side which was read last has too.
  [[nodiscard]] bool lives(const kelvar_compare::Identity& site);
  [[nodiscard]] const std::vector<std::string>& complaints() const noexcept { return complaints_; }
  /// What measured the times of the side that was read last, each once.
  [[nodiscard]] const std::set<std::string>& timeSources() const noexcept { return timeSources_; }

 private:
  struct Database;

  [[nodiscard]] std::uint32_t databaseNumber(const std::string& path);
  [[nodiscard]] kelvar_compare::RunRecord runIn(const std::string& directory);
  Database& opened(std::uint32_t database);
  void complain(std::string sentence);

  std::map<std::string, std::uint32_t> numbers_;      // by the path without links
  std::vector<std::unique_ptr<Database>> databases_;  // 0: none
  std::set<std::uint32_t> ofSide_;                    // those of the side that was read last
  std::unique_ptr<kelvar_sources::TextNumbers> texts_;
  std::vector<std::string> complaints_;
  std::set<std::string> timeSources_;
};

/// Whether a run of the side has a result of the analysis.
[[nodiscard]] bool hasResultOf(const kelvar_compare::Side& side, digestio::SummaryDataKind kind) noexcept;

/// What the times of all these sources count; seconds where they differ.
[[nodiscard]] kelvar_page::TimeUnit unitOfAll(const std::set<std::string>& timeSources);

/// The directories of both sides, read and compared.
struct ComparedSides {
  kelvar_compare::Side before;
  kelvar_compare::Side after;
  kelvar_compare::Comparison comparison;
  std::vector<std::string> complaints;
  std::set<std::string> timeSourcesBefore = {};  ///< as timeSourceOf() tells; empty where nobody says
  std::set<std::string> timeSourcesAfter = {};

  /// What the times of a side count: seconds where its runs differ.
  [[nodiscard]] kelvar_page::TimeUnit unitBefore() const { return unitOfAll(timeSourcesBefore); }
  [[nodiscard]] kelvar_page::TimeUnit unitAfter() const { return unitOfAll(timeSourcesAfter); }
  /// Without it, no time of one side is a part of one of the other.
  [[nodiscard]] bool oneUnit() const { return unitBefore() == unitAfter(); }

  /// Whether times on both sides come from one source, as far as anybody says.
  [[nodiscard]] bool oneTimeSource() const {
    return timeSourcesBefore.empty() || timeSourcesAfter.empty() ||
           (timeSourcesBefore.size() == 1 && timeSourcesBefore == timeSourcesAfter);
  }
};
/// `perf, in seconds`; of several, with ` and ` between them.
[[nodiscard]] std::string joined(const std::set<std::string>& timeSources);
/// Throws UsageError where one is no directory, has nothing to compare, or is named twice on a side.
[[nodiscard]] ComparedSides compareRuns(const std::vector<std::string>& before, const std::vector<std::string>& after,
                                        std::optional<double> threshold);

}  // namespace kelvar_tool
