#include "Analysis.h"
#include "Sources.h"
#include "Tally.h"

namespace kelvar_import {

namespace {

class DependenciesAnalysis final : public Analysis {
 public:
  DependenciesAnalysis(Places& places, const Wishes&) : places_(places), tally_(places) {}

  /// A report comes as one record for each of its stacks: it counts once, whatever they have in common.
  void add(const Record& record) override {
    if (record.report != report_ || record.report == 0) endReport();
    report_ = record.report;
    stacks_.push_back(record);
  }

  Outcome finish() override {
    endReport();
    Outcome outcome;
    for (std::size_t i = 0; i < tally_.sites().size(); ++i) {
      addRow(outcome, siteDetail(places_.regions()[i]), tally_.sites()[i]);
    }
    for (const FunctionRow& function : tally_.functions()) addRow(outcome, functionDetail(function), function.weights);
    remarkPlaceless(tally_, reports_, outcome.remarks);
    return outcome;
  }

 private:
  void endReport() {
    if (stacks_.empty()) return;
    ++reports_;
    bool inSite = false;
    for (const Record& record : stacks_) inSite = tally_.addToSites(record) || inSite;
    if (!inSite) addToFunction();
    stacks_.clear();
  }

  void addToFunction() {
    for (const Record& record : stacks_) {
      if (const Place* place = places_.ownPlace(record.stack)) {
        tally_.addToFunction(*place, record.weights);
        return;
      }
    }
    tally_.addPlaceless(stacks_.front());
  }

  static void addRow(Outcome& outcome, Detail detail, const Weights& weights) {
    detail.dependencies = {.errors = countOf(weights[race]),
                           .warnings = {countOf(weights[lockOrder]), countOf(weights[otherFinding])}};
    outcome.details.push_back(std::move(detail));
  }

  Places& places_;
  Tally tally_;
  std::vector<Record> stacks_;  // of the report that is being read
  std::size_t report_ = 0;
  std::size_t reports_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> dependenciesOf(Places& places, const Wishes& wishes) {
  return std::make_unique<DependenciesAnalysis>(places, wishes);
}

}  // namespace kelvar_import
