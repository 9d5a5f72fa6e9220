#include "Analysis.h"
#include "Tally.h"

namespace kelvar_import {

namespace {

class MapAnalysis final : public Analysis {
 public:
  MapAnalysis(Places& places, const Wishes& wishes) : places_(places), wishes_(wishes), tally_(places) {}

  void add(const Record& record) override {
    ++records_;
    const bool inSite = tally_.addShareToSites(record);
    const Place* const place = places_.ownPlace(record.stack);
    if (place) tally_.addToFunction(*place, record.weights);
    if (!inSite && !place) tally_.addPlaceless(record);
  }

  Outcome finish() override {
    tally_.spreadUnlined();
    Outcome outcome;
    for (std::size_t i = 0; i < tally_.sites().size(); ++i) {
      addRow(outcome, siteDetail(places_.regions()[i]), tally_.sites()[i]);
    }
    for (const FunctionRow& function : weighty(tally_.functions(), wishes_.atLeast, outcome.remarks)) {
      addRow(outcome, functionDetail(function), function.weights);
    }
    remarkPlaceless(tally_, records_, outcome.remarks);
    return outcome;
  }

 private:
  static void addRow(Outcome& outcome, Detail detail, const Weights& accesses) {
    const auto count = [&accesses](std::size_t stride) { return static_cast<std::int64_t>(accesses[stride]); };
    detail.map = {.strides = {count(0), count(1), count(2)}};
    outcome.details.push_back(std::move(detail));
  }

  Places& places_;
  const Wishes& wishes_;
  Tally tally_;
  std::size_t records_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> mapOf(Places& places, const Wishes& wishes) {
  return std::make_unique<MapAnalysis>(places, wishes);
}

}  // namespace kelvar_import
