#pragma once

#include <string>

#include "kelvar/SummaryResult.h"

namespace support {

/// A result that states what a test tells it.
struct FakeResult : kelvar_2_1_7::SummaryResult {
  int count = 0;
  std::uint64_t time = 0;
  std::uint64_t duration = 0;
  std::string text;

  int resultCount() const override { return count; }
  kelvar_2_1_7::SummaryResult* result(int) const override { return nullptr; }
  digestio::SummaryCollection* summaryCollection() const override { return nullptr; }
  std::uint64_t collectionTime() const override { return time; }
  std::uint64_t collectionDuration() const override { return duration; }
  std::uint64_t finalizationTime() const override { return 0; }
  std::uint64_t finalizationDuration() const override { return 2; }
  std::string hostName() const override { return text; }
  int cpuCount() const override { return 4; }
  std::uint64_t cpuFrequency() const override { return UINT64_MAX; }
  std::string operatingSystem() const override { return text; }
  std::string applicationLog() const override { return "a.log"; }
  std::string collectorLog() const override { return ""; }
  std::string commandLog() const override { return "c.log"; }
  bool likelyDebugInfoMissing() const override { return true; }
  int threading_paradigm() const override { return 7; }
  int num_processors() const override { return 0; }
  int num_kova_threads() const override { return 0; }
  int target_system() const override { return 3; }
  double programMaxGain() const override { return 0; }
};

}  // namespace support
