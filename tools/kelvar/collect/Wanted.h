#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kelvar_tool {

/// The command line of `collect`.
struct Wanted {
  std::string project;
  std::optional<std::string> run;
  std::set<std::string> only;  ///< analyses; empty: all
  std::vector<std::string> binaries;
  std::vector<std::string> remarks;
  std::string sourceRoot;
  std::string keep;
  int cores = 0;
  std::uint64_t mapAccesses = 0;  ///< 0: all
  bool dryRun = false;
  std::vector<std::string> command;
};

}  // namespace kelvar_tool
