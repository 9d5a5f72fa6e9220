#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kelvar/SummaryResult.h"

namespace kelvar_2_1_7 {

/// Several results as one: the values on which they agree. Does not own them.
class AggregateSummaryResultImpl final : public SummaryResult {
 public:
  /// Makes room, so that the next append cannot fail.
  void reserveOne() {
    if (results_.size() == results_.capacity()) results_.reserve(2 * results_.size() + 1);
  }
  void append(SummaryResult* result) { results_.push_back(result); }

  [[nodiscard]] int resultCount() const override;
  [[nodiscard]] SummaryResult* result(int index) const override;
  [[nodiscard]] digestio::SummaryCollection* summaryCollection() const override { return nullptr; }
  [[nodiscard]] std::uint64_t collectionTime() const override;
  [[nodiscard]] std::uint64_t collectionDuration() const override;
  [[nodiscard]] std::uint64_t finalizationTime() const override;
  [[nodiscard]] std::uint64_t finalizationDuration() const override;
  [[nodiscard]] std::string hostName() const override;
  [[nodiscard]] int cpuCount() const override;
  [[nodiscard]] std::uint64_t cpuFrequency() const override;
  [[nodiscard]] std::string operatingSystem() const override;
  [[nodiscard]] std::string applicationLog() const override;
  [[nodiscard]] std::string collectorLog() const override;
  [[nodiscard]] std::string commandLog() const override;
  [[nodiscard]] bool likelyDebugInfoMissing() const override;
  [[nodiscard]] int threading_paradigm() const override;
  [[nodiscard]] int num_processors() const override;
  [[nodiscard]] int num_kova_threads() const override;
  [[nodiscard]] int target_system() const override;
  [[nodiscard]] double programMaxGain() const override;

 private:
  std::vector<SummaryResult*> results_;
};

/// An unknown threading paradigm and an unknown target system in a result.
inline constexpr int kUnknownParadigm = 7;
inline constexpr int kUnknownTarget = 3;

}  // namespace kelvar_2_1_7
