#include <map>

#include "Analysis.h"
#include "Tally.h"

namespace kelvar_readers {

namespace {

class MapAnalysis final : public Analysis {
 public:
  MapAnalysis(Places& places, const Wishes& wishes)
      : places_(places), wishes_(wishes), tally_(places), steps_(places.regions().size()) {}

  void add(const Record& record) override {
    ++records_;
    const std::vector<std::size_t>& sites = tally_.addToSitesOfStack(record);
    for (const std::size_t site : sites) addSteps(site, record);
    const bool inFunction = !record.stack.empty() && !record.stack.front()->function.empty();
    if (inFunction) tally_.addToFunction(*record.stack.front(), record.weights);
    if (sites.empty() && !inFunction) tally_.addPlaceless(record);
  }

  Outcome finish(const Reading&) override {
    Outcome outcome;
    for (std::size_t i = 0; i < tally_.sites().size(); ++i) {
      addRow(outcome, siteDetail(places_.regions()[i]), tally_.sites()[i]);
      addEvidence(outcome, i);
    }
    for (const FunctionRow& function : weighty(tally_.functions(), wishes_.atLeast, outcome.remarks)) {
      addRow(outcome, functionDetail(function), function.weights);
    }
    remarkPlaceless(tally_, records_, outcome.remarks);
    if (tally_.placelessCount() == records_) outcome.emptiness = "no access has a place";
    return outcome;
  }

 private:
  void addSteps(std::size_t site, const Record& record) {
    const Place& place = record.stack.front()->chain.front();
    for (const auto& [bytes, count] : record.steps) {
      Stepped& stepped = steps_[site][bytes];
      stepped.count += count;
      if (count <= stepped.most) continue;
      stepped.most = count;
      stepped.place = evidencePlace(place, places_);
    }
  }

  /// The most frequent steps of a site, each with the line that makes it most often.
  void addEvidence(Outcome& outcome, std::size_t site) {
    for (const auto& [bytes, stepped] : steps_[site]) {
      outcome.evidence.push_back({.detail = static_cast<std::int32_t>(outcome.details.size()) - 1,
                                  .kind = kelvar_platform::EvidenceKind::stride,
                                  .text = std::to_string(bytes) + " bytes from access to access",
                                  .count = stepped.count,
                                  .places = {stepped.place}});
    }
  }

  static void addRow(Outcome& outcome, Detail detail, const Weights& accesses) {
    const auto count = [&accesses](std::size_t stride) { return static_cast<std::int64_t>(accesses[stride]); };
    detail.map = {.strides = {count(0), count(1), count(2)}};
    outcome.details.push_back(std::move(detail));
  }

  Places& places_;
  const Wishes& wishes_;
  Tally tally_;
  struct Stepped {
    std::int64_t count = 0;
    std::int64_t most = 0;
    kelvar_platform::EvidencePlace place;
  };
  std::vector<std::map<std::int64_t, Stepped>> steps_;  // of each site, by bytes
  std::size_t records_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> mapOf(Places& places, const Wishes& wishes) {
  return std::make_unique<MapAnalysis>(places, wishes);
}

}  // namespace kelvar_readers
