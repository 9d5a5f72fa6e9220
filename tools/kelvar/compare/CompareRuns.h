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

/// Reads runs and projects one after the other, and keeps only what a comparison needs.
class ComparedRuns {
 public:
  ComparedRuns();
  ~ComparedRuns();
  ComparedRuns(const ComparedRuns&) = delete;  // anchors() refers to it
  ComparedRuns& operator=(const ComparedRuns&) = delete;

  /// Reads the runs in these directories as one side; `argument` names it in messages. A piece that cannot be read, or
  /// a side without any result, is reported on standard error and is among the complaints.
  [[nodiscard]] kelvar_compare::Side read(const char* argument, const std::vector<std::string>& directories);

  [[nodiscard]] kelvar_compare::AnchorsOf anchors();
  /// Whether the site's annotation is alive, disabled or not, in a database of the side that was read last.
  [[nodiscard]] bool lives(const kelvar_compare::Identity& site);
  [[nodiscard]] const std::vector<std::string>& complaints() const noexcept { return complaints_; }
  /// The time sources of the side that was read last, see timeSourceOf().
  [[nodiscard]] const std::set<std::string>& timeSources() const noexcept { return timeSources_; }

 private:
  struct Database;

  [[nodiscard]] std::uint32_t databaseNumber(const std::string& path);
  [[nodiscard]] kelvar_compare::RunRecord runIn(const std::string& directory);
  Database& opened(std::uint32_t database);
  void complain(std::string sentence);

  std::map<std::string, std::uint32_t> numbers_;      // by canonical path
  std::vector<std::unique_ptr<Database>> databases_;  // 0: none
  std::set<std::uint32_t> ofSide_;                    // databases of the side that was read last
  std::unique_ptr<kelvar_sources::TextNumbers> texts_;
  std::vector<std::string> complaints_;
  std::set<std::string> timeSources_;
};

/// Whether a run of the side has a result of the analysis.
[[nodiscard]] bool hasResultOf(const kelvar_compare::Side& side, digestio::SummaryDataKind kind) noexcept;

/// The common unit of these time sources; seconds when they differ.
[[nodiscard]] kelvar_page::TimeUnit unitOfAll(const std::set<std::string>& timeSources);

/// The directories of both sides, read and compared.
struct ComparedSides {
  kelvar_compare::Side before;
  kelvar_compare::Side after;
  kelvar_compare::Comparison comparison;
  std::vector<std::string> complaints;
  std::set<std::string> timeSourcesBefore = {};  ///< see timeSourceOf(); empty when unknown
  std::set<std::string> timeSourcesAfter = {};

  /// The unit of a side's times; seconds when its runs differ.
  [[nodiscard]] kelvar_page::TimeUnit unitBefore() const { return unitOfAll(timeSourcesBefore); }
  [[nodiscard]] kelvar_page::TimeUnit unitAfter() const { return unitOfAll(timeSourcesAfter); }
  /// Whether the times of both sides can be compared.
  [[nodiscard]] bool oneUnit() const { return unitBefore() == unitAfter(); }

  /// Whether the times of both sides have the same source, as far as known.
  [[nodiscard]] bool oneTimeSource() const {
    return timeSourcesBefore.empty() || timeSourcesAfter.empty() ||
           (timeSourcesBefore.size() == 1 && timeSourcesBefore == timeSourcesAfter);
  }
};
/// `perf, in seconds`; several sources are joined by ` and `.
[[nodiscard]] std::string joined(const std::set<std::string>& timeSources);
/// Reads and compares both sides. Throws UsageError when a path is no directory, has nothing to compare, or is named
/// twice on a side.
[[nodiscard]] ComparedSides compareRuns(const std::vector<std::string>& before, const std::vector<std::string>& after,
                                        std::optional<double> threshold);

}  // namespace kelvar_tool
