#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "kelvar/SummaryData.h"
#include "results/AggregateSummaryResultImpl.h"
#include "results/SummaryResultImpl.h"
#include "view/View.h"
#include "view/ViewSettings.h"
#include "view/report/TextSink.h"

namespace kelvar_2_1_7 {

/// What a SummaryData is made of: the annotations' items, the results joined with them, and the view on both.
class __attribute__((visibility("hidden"))) SummaryData::Impl {  // else exported with the class around it
 public:
  explicit Impl(boost::shared_ptr<sitenotes::database_t> database);
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  /// `database` is not looked at: the state comes from the process-wide scanner.
  void addSummaryData(std::string path, boost::shared_ptr<sitenotes::database_t> database);
  [[nodiscard]] SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const { return kindStatus_[kind]; }

  void setSummaryKindEnable(digestio::SummaryDataKind kind, bool enable);
  void setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                  sitenotes::annotation_t::kind_t annotationKind);
  void setMapping(SummaryMapping mapping, bool reverse);
  void setSuitabilityProjectOptions(digestio::SuitabilityProjectOptions* options);

  [[nodiscard]] int num_items();
  [[nodiscard]] SummaryItem* item(int index);
  void write(TextSink& out, bool verbose);

  [[nodiscard]] const boost::shared_ptr<sitenotes::database_t>& annotationDatabase() const { return database_; }

  [[nodiscard]] int threading_paradigm() const;
  [[nodiscard]] int num_processors() const { return aggregate_.num_processors(); }
  [[nodiscard]] int num_kova_threads() const { return aggregate_.num_kova_threads(); }
  [[nodiscard]] int target_system() const { return aggregate_.target_system(); }
  [[nodiscard]] double programMaxGain() const { return aggregate_.programMaxGain(); }
  [[nodiscard]] bool hasData(digestio::SummaryDataKind kind) const;

  [[nodiscard]] SummaryResult* aggregateResult() { return &aggregate_; }
  [[nodiscard]] SummaryResult* kindResult(digestio::SummaryDataKind kind) { return &kindResults_[kind]; }

 private:
  void populateAnnotations();
  void takeState(sitenotes::scanner_t& scanner, const std::string& path);
  SummaryDataStatus mergeCollections(SummaryItems& incoming);
  void file(std::unique_ptr<SummaryResultImpl> result, SummaryDataStatus status) noexcept;
  void rebuildIfStale();

  boost::shared_ptr<sitenotes::database_t> database_;
  boost::shared_ptr<sitenotes::database_t> state_;  // the annotations as of the first result added; empty: none
  bool viewValid_ = false;
  ViewSettings settings_;
  View view_;
  AggregateSummaryResultImpl aggregate_;
  PerKind<AggregateSummaryResultImpl> kindResults_;
  SummaryItems visibleItems_;  // in view order once the view is valid
  SummaryItems hiddenItems_;
  PerKind<SummaryDataStatus> kindStatus_{};
  std::vector<std::unique_ptr<SummaryResultImpl>> results_;
};

}  // namespace kelvar_2_1_7
