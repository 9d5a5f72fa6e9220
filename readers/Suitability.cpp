#include <algorithm>
#include <map>
#include <memory>
#include <tuple>

#include "Analysis.h"
#include "Diagnosis.h"
#include "Tally.h"

namespace kelvar_readers {

namespace {

using Kind = sitenotes::annotation_t;

/// The gain of one site or line. coz speeds up one line at a time, so gains do not add up: the best one counts.
struct Gain {
  double seconds = 0;
  double site = 0;
  double program = 0;

  void take(const Weights& weights) {
    seconds += weights[0];
    if (weights[2] <= program) return;
    site = weights[1];
    program = weights[2];
  }
};

class CozAnalysis final : public Analysis {
 public:
  CozAnalysis(Places& places, const Wishes&) : places_(places), sites_(places.regions().size()) {}

  void add(const Record& record) override {
    ++records_;
    best_ = std::max(best_, record.weights[2]);
    const Place& place = record.stack.front()->chain.front();
    const auto regions = places_.regionsAt(place);
    for (const std::size_t region : regions) sites_[region].take(record.weights);
    if (!regions.empty()) return;
    if (place.file.empty() || place.line == 0) {
      ++placeless_;
    } else {
      lines_[{places_.pathOf(place.file), place.line}].take(record.weights);
    }
  }

  Outcome finish(const Reading&) override {
    Outcome outcome;
    outcome.programMaxGain = best_;
    if (best_ <= 0) outcome.emptiness = "no experiment of coz shows a gain: let the program run longer";
    for (std::size_t i = 0; i < sites_.size(); ++i) addRow(outcome, siteDetail(places_.regions()[i]), sites_[i]);
    // Coz names lines, not functions.
    for (const auto& [place, gain] : lines_) {
      const std::string label = std::string(leafOf(place.first)) + ":" + std::to_string(place.second);
      addRow(outcome, functionDetail({.name = label, .file = place.first, .line = place.second}), gain);
    }
    if (placeless_ > 0) {
      outcome.remarks.push_back(std::to_string(placeless_) + " of " + std::to_string(records_) +
                                " lines have no place");
    }
    return outcome;
  }

 private:
  static void addRow(Outcome& outcome, Detail detail, const Gain& gain) {
    detail.suitability = {.selfTime = gain.seconds, .siteMaxGain = gain.site, .totalMaxGain = gain.program, .cores = 1};
    outcome.details.push_back(std::move(detail));
  }

  Places& places_;
  std::vector<Gain> sites_;
  std::map<std::pair<std::string, int>, Gain> lines_;
  double best_ = 0;
  std::size_t records_ = 0;
  std::size_t placeless_ = 0;
};

/// The times of the project's survey.
struct Measured {
  double total = 0;
  std::map<std::tuple<int, std::string, std::string>, double> sites;  // by kind, label and leaf of the file
};

Measured measured(const std::string& survey) {
  const std::unique_ptr<digestio::SummaryCollection> collection(digestio::SummaryCollection::load(survey));
  if (!collection) {
    std::vector<kelvar_platform::Refusal> refusals = kelvar_platform::takeRefusals();
    if (refusals.empty()) refusals.push_back({.file = survey, .place = "", .expected = "a survey to model from"});
    throw kelvar_platform::ReadError(refusals.back());
  }
  Measured measured;
  for (int i = 0; i < collection->detailCount(); ++i) {
    const digestio::SummaryDetail& detail = *collection->detail(i);
    const digestio::SurveyDetail* const time = detail.surveyView();
    if (!time) continue;
    if (detail.detailKind() == digestio::kHotSpot) measured.total += time->cpuTime();
    if (detail.detailKind() != digestio::kAnnotatedSite) continue;
    const std::string file = detail.locator().get_file().get_text();
    measured.sites[{detail.annotationKind(), detail.label(), std::string(leafOf(file))}] = time->cpuTime();
  }
  return measured;
}

/// Amdahl's law: how many times as fast the program is when `share` of its time runs on `cores` cores.
double amdahl(double share, int cores) {
  return 1 / (1 - share + share / cores);
}

class Model final : public Analysis {
 public:
  Model(Places& places, const Wishes& wishes) : places_(places), wishes_(wishes) {}

  void add(const Record&) override {}

  Outcome finish(const Reading&) override {
    const std::string survey = wishes_.project + "/survey";
    const Measured measured = kelvar_readers::measured(survey);
    if (measured.total <= 0) {
      throw kelvar_platform::ReadError({.file = survey, .place = "", .expected = "hot spots that took time"});
    }
    Outcome outcome;
    outcome.remarks.push_back("these gains are a model, Amdahl's law over the survey's shares for " +
                              std::to_string(wishes_.cores) +
                              " cores: nothing was run, and what is parallel already counts as serial");
    double parallel = 0;
    for (std::size_t i = 0; i < places_.regions().size(); ++i) {
      const double time = timeOf(places_.regions()[i], measured);
      if (isOutermost(i)) parallel += time;
      addRow(outcome, places_.regions()[i], time, std::min(1.0, time / measured.total));
    }
    outcome.programMaxGain = amdahl(std::min(1.0, parallel / measured.total), wishes_.cores);
    return outcome;
  }

 private:
  static bool canBeShared(Kind::kind_t kind) { return kind != Kind::critical; }

  static double timeOf(const Region& region, const Measured& measured) {
    const auto found = measured.sites.find({region.kind, region.label, std::string(leafOf(region.file))});
    return found == measured.sites.end() ? 0 : found->second;
  }

  /// Whether the site is the outermost one that may run on several cores. The program's gain counts only these, so no
  /// piece of the source counts twice.
  bool isOutermost(std::size_t index) {
    const Region& region = places_.regions()[index];
    if (!canBeShared(region.kind)) return false;
    const auto around = places_.regionsAround(index);
    const auto outermost = std::find_if(around.rbegin(), around.rend(),
                                        [&](std::size_t i) { return canBeShared(places_.regions()[i].kind); });
    return outermost != around.rend() && *outermost == index;
  }

  void addRow(Outcome& outcome, const Region& region, double time, double share) const {
    Detail detail = siteDetail(region);
    const int cores = canBeShared(region.kind) ? wishes_.cores : 1;
    const double gain = share > 0 ? cores : 1;
    detail.suitability = {.selfTime = time, .siteMaxGain = gain, .totalMaxGain = amdahl(share, cores), .cores = cores};
    outcome.details.push_back(std::move(detail));
  }

  Places& places_;
  const Wishes& wishes_;
};

}  // namespace

std::unique_ptr<Analysis> suitabilityOf(Places& places, const Wishes& wishes) {
  return std::make_unique<CozAnalysis>(places, wishes);
}

std::unique_ptr<Analysis> modelOf(Places& places, const Wishes& wishes) {
  return std::make_unique<Model>(places, wishes);
}

}  // namespace kelvar_readers
