#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "kelvar/SummaryData.h"
#include "kelvar/SummaryResult.h"
#include "resdir.h"

namespace kelvar_2_1_7 {

/// One analysis result: read once, at construction.
class SummaryResultImpl final : public SummaryResult {
 public:
  /// Reads the result at `resultPath`. `owner` is for the items. `database` has the annotations as they were when the
  /// result was collected; it may be empty. loaded() tells whether there was a result to read.
  SummaryResultImpl(SummaryData::Impl* owner, std::string resultPath,
                    boost::shared_ptr<sitenotes::database_t> database);
  ~SummaryResultImpl() override;
  SummaryResultImpl(const SummaryResultImpl&) = delete;
  SummaryResultImpl& operator=(const SummaryResultImpl&) = delete;

  [[nodiscard]] bool loaded() const noexcept { return loaded_; }
  /// Whether the result has data of `kind`: its own kind, and any that its details show.
  [[nodiscard]] bool carries(digestio::SummaryDataKind kind) const noexcept { return carries_[kind]; }
  /// The sites that the analysis reported and those that were annotated, each once. Joins read them; items of the data
  /// object point to the same details.
  [[nodiscard]] SummaryItems& items() noexcept { return items_; }

  [[nodiscard]] int resultCount() const override { return 0; }
  [[nodiscard]] SummaryResult* result(int) const override { return nullptr; }
  [[nodiscard]] digestio::SummaryCollection* summaryCollection() const override { return collection_.get(); }
  [[nodiscard]] std::uint64_t collectionTime() const override { return collectionTime_; }
  [[nodiscard]] std::uint64_t collectionDuration() const override { return collectionDuration_; }
  [[nodiscard]] std::uint64_t finalizationTime() const override { return finalizationTime_; }
  [[nodiscard]] std::uint64_t finalizationDuration() const override { return finalizationDuration_; }
  [[nodiscard]] std::string hostName() const override { return hostName_; }
  [[nodiscard]] int cpuCount() const override { return cpuCount_; }
  [[nodiscard]] std::uint64_t cpuFrequency() const override { return cpuFrequency_; }
  [[nodiscard]] std::string operatingSystem() const override { return operatingSystem_; }
  [[nodiscard]] std::string applicationLog() const override { return applicationLog_; }
  [[nodiscard]] std::string collectorLog() const override { return collectorLog_; }
  [[nodiscard]] std::string commandLog() const override { return commandLog_; }
  [[nodiscard]] bool likelyDebugInfoMissing() const override { return likelyDebugInfoMissing_; }
  // Asked of the collection every time: only a loaded result has one.
  [[nodiscard]] int threading_paradigm() const override { return collection_->threading_paradigm(); }
  [[nodiscard]] int num_processors() const override { return collection_->num_processors(); }
  [[nodiscard]] int num_kova_threads() const override { return collection_->num_kova_threads(); }
  [[nodiscard]] int target_system() const override { return collection_->target_system(); }
  [[nodiscard]] double programMaxGain() const override { return collection_->programMaxGain(); }

 private:
  void readMetadata(resdir::IResultDirectory& directory);
  void addDetails(SummaryData::Impl* owner);
  void addAnnotations(SummaryData::Impl* owner);

  bool loaded_ = false;
  PerKind<bool> carries_{};
  std::unique_ptr<digestio::SummaryCollection> collection_;
  boost::shared_ptr<sitenotes::database_t> database_;
  SummaryItems items_;
  std::uint64_t collectionTime_ = 0;
  std::uint64_t collectionDuration_ = 0;
  std::uint64_t finalizationTime_ = 0;
  std::uint64_t finalizationDuration_ = 0;
  std::string hostName_;
  int cpuCount_ = 0;
  std::uint64_t cpuFrequency_ = 0;
  std::string operatingSystem_;
  std::string applicationLog_;
  std::string collectorLog_;
  std::string commandLog_;
  bool likelyDebugInfoMissing_ = false;
};

}  // namespace kelvar_2_1_7
