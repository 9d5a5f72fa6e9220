#include <algorithm>
#include <tuple>
#include <utility>

#include "Analysis.h"
#include "CallGraph.h"
#include "FunctionNames.h"
#include "LineTimes.h"
#include "SiteShares.h"
#include "Tally.h"

namespace kelvar_readers {

namespace {

/// The time of one line in one function.
struct InLine {
  std::size_t function = 0;
  std::size_t file = 0;
  int line = 0;
  double time = 0;

  [[nodiscard]] auto key() const { return std::tie(function, file, line); }
};

/// Adds up times by line. Records come in runs of one function, so a run is folded when it ends; that keeps the list
/// short without a lookup for each record.
class TimesByLine {
 public:
  void add(const InLine& in) {
    if (!lines_.empty() && lines_.back().key() == in.key()) {
      lines_.back().time += in.time;
      return;
    }
    if (lines_.size() >= roomBeforeFolding_) {
      fold(0);
      roomBeforeFolding_ = std::max(roomBeforeFolding_, 2 * lines_.size());
    } else if (!lines_.empty() && lines_.back().function != in.function) {
      fold(run_);
    }
    lines_.push_back(in);
  }
  /// The sums, each line once.
  [[nodiscard]] const std::vector<InLine>& folded() {
    fold(0);
    return lines_;
  }

 private:
  /// Sorts the entries from `first` on, and adds up those of the same line.
  void fold(std::size_t first) {
    const auto isBefore = [](const InLine& a, const InLine& b) { return a.key() < b.key(); };
    const auto begin = lines_.begin() + static_cast<std::ptrdiff_t>(first);
    if (!std::is_sorted(begin, lines_.end(), isBefore)) std::stable_sort(begin, lines_.end(), isBefore);
    std::size_t kept = first;
    for (std::size_t i = first + 1; i < lines_.size(); ++i) {
      if (lines_[i].key() == lines_[kept].key()) {
        lines_[kept].time += lines_[i].time;
      } else {
        lines_[++kept] = lines_[i];
      }
    }
    if (lines_.size() > first) lines_.resize(kept + 1);
    run_ = lines_.size();
  }

  std::vector<InLine> lines_;
  std::size_t run_ = 0;  // where the last function's lines begin
  std::size_t roomBeforeFolding_ = 1U << 20U;
};

class SurveyAnalysis final : public Analysis {
 public:
  SurveyAnalysis(Places& places, const Wishes& wishes)
      : places_(places), wishes_(wishes), tally_(places), shares_(places, tally_) {}

  void add(const Record& record) override {
    if (record.callee != 0) {
      calls_.addCall(record.function, record.callee, record.weights[0], places_.regionsOf(*record.stack.front()));
      return;
    }
    ++records_;
    total_ += record.weights[0];
    const std::vector<std::size_t>& sites = tally_.addToSitesOfStack(record);
    if (record.function != 0) calls_.addSelf(record.function, record.weights[0], sites);
    const bool inFunction = !record.stack.empty() && !record.stack.front()->function.empty();
    if (inFunction) {
      const Frame& frame = *record.stack.front();
      const std::size_t function = tally_.addToFunction(frame, record.weights);
      addToLines(frame, record.weights[0]);
      for (const std::size_t site : sites) shares_.add(site, function, frame.chain.front(), record.weights[0]);
    }
    if (sites.empty() && !inFunction) tally_.addPlaceless(record);
  }

  Outcome finish(const Reading& reading) override {
    Outcome outcome;
    outcome.remarks.push_back("times are in " + reading.unit + ", " + std::to_string(total_) + " in all");
    if (!reading.hasStacks && !reading.hasCalls && !places_.regions().empty()) {
      outcome.remarks.emplace_back(
          "the samples have no stacks, so sites hold what is inlined into them but not what they call: record with "
          "perf record -g or --call-graph dwarf");
    }
    addSites(reading, outcome);
    std::vector<FunctionRow> functions = tally_.functions();
    outcome.lineTimes = lineTimes();
    functions = weighty(std::move(functions), wishes_.atLeast, outcome.remarks);
    outcome.details.reserve(outcome.details.size() + functions.size());
    for (const FunctionRow& function : functions) {
      addRow(outcome, functionDetail(function), function.weights[0]);
    }
    rank(outcome.details);
    remarkPlaceless(tally_, records_, outcome.remarks);
    if (total_ > 0 && tally_.placelessCount() == records_) outcome.emptiness = "no record has a place";
    if (total_ <= 0) outcome.emptiness = "nothing took any time";
    return outcome;
  }

 private:
  void addSites(const Reading& reading, Outcome& outcome) {
    const std::size_t count = tally_.sites().size();
    std::vector<double> times;
    for (const Weights& weights : tally_.sites()) times.push_back(weights[0]);
    const std::vector<double> within = times;
    if (reading.hasCalls) times = calls_.timesOfSites(count);
    for (std::size_t site = 0; site < count; ++site) {
      addRow(outcome, siteDetail(places_.regions()[site]), times[site]);
      shares_.addTo(outcome, site, times[site], within[site]);
    }
  }

  /// Adds the time to every line of the project in the frame's chain: a loop's time includes what is inlined into it.
  void addToLines(const Frame& frame, double time) {
    for (std::size_t i = 0; i < frame.chain.size(); ++i) {
      const Place& place = frame.chain[i];
      if (place.line == 0 || places_.isLibrary(place.file)) continue;
      const bool again = std::any_of(
          frame.chain.begin(), frame.chain.begin() + static_cast<std::ptrdiff_t>(i), [&](const Place& inner) {
            return inner.line == place.line && inner.file == place.file && inner.function == place.function;
          });
      if (!again) lines_.add({names_.numberOf(place.function), places_.numberOf(place.file), place.line, time});
    }
  }

  void addRow(Outcome& outcome, Detail detail, double time) const {
    detail.survey = {.cpuTime = time, .priority = priorityOf(total_ > 0 ? time / total_ : 0), .id = 0};
    outcome.details.push_back(std::move(detail));
  }

  /// Numbers the rows by time, the slowest first.
  static void rank(std::vector<Detail>& details) {
    std::vector<kelvar_platform::SurveyRecord*> byTime;
    byTime.reserve(details.size());
    for (Detail& detail : details) byTime.push_back(&*detail.survey);
    std::stable_sort(byTime.begin(), byTime.end(),
                     [](const auto* a, const auto* b) { return a->cpuTime > b->cpuTime; });
    int id = 0;
    for (kelvar_platform::SurveyRecord* survey : byTime) survey->id = ++id;
  }

  [[nodiscard]] std::string lineTimes() {
    LineTimesText text;
    text.add({"", 0, "", total_});
    for (const InLine& in : lines_.folded()) {
      text.add({places_.pathNumbered(in.file), in.line, names_.nameNumbered(in.function), in.time});
    }
    return text.take();
  }

  Places& places_;
  const Wishes& wishes_;
  Tally tally_;
  SiteShares shares_;
  CallGraph calls_;
  FunctionNames names_;
  TimesByLine lines_;
  std::size_t records_ = 0;
  double total_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> surveyOf(Places& places, const Wishes& wishes) {
  return std::make_unique<SurveyAnalysis>(places, wishes);
}

}  // namespace kelvar_readers
