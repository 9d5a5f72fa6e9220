#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Comparison.h"
#include "Pairing.h"

namespace kelvar_tool {

/// Reads runs and projects one after the other, and keeps of each only what a comparison needs.
class ComparedRuns {
 public:
  ComparedRuns();
  ~ComparedRuns();
  ComparedRuns(const ComparedRuns&) = delete;  // what it hands out refers to it
  ComparedRuns& operator=(const ComparedRuns&) = delete;

  /// The runs in these directories as one side. What could not be read is said, and is among the complaints.
  [[nodiscard]] kelvar_compare::Side read(const std::vector<std::string>& directories);

  [[nodiscard]] kelvar_compare::AnchorsOf anchors();
  /// Whether the annotation lives, disabled or not, in a database that the side which was read last has too.
  [[nodiscard]] bool lives(const kelvar_compare::Identity& site);
  [[nodiscard]] const std::vector<std::string>& complaints() const noexcept { return complaints_; }

 private:
  struct Database;

  [[nodiscard]] std::uint32_t databaseNumber(const std::string& path);
  [[nodiscard]] kelvar_compare::RunRecord runIn(const std::string& directory);
  Database& opened(std::uint32_t database);

  std::map<std::string, std::uint32_t> numbers_;      // by the path without links
  std::vector<std::unique_ptr<Database>> databases_;  // 0: none
  std::set<std::uint32_t> ofSide_;                    // those of the side that was read last
  std::unique_ptr<kelvar_sources::TextNumbers> texts_;
  std::vector<std::string> complaints_;
};

/// The directories of both sides, read and compared.
struct ComparedSides {
  kelvar_compare::Side before;
  kelvar_compare::Side after;
  kelvar_compare::Comparison comparison;
  std::vector<std::string> complaints;
};
/// Throws UsageError where one is no directory or has nothing to compare.
[[nodiscard]] ComparedSides compareRuns(const std::vector<std::string>& before, const std::vector<std::string>& after,
                                        std::optional<double> threshold);

}  // namespace kelvar_tool
