#include <algorithm>
#include <tuple>
#include <utility>

#include "Analysis.h"
#include "LineTimes.h"
#include "Tally.h"

namespace kelvar_import {

namespace {

/// The time of one line in one function, by their numbers.
struct InLine {
  std::size_t function = 0;
  std::size_t file = 0;
  int line = 0;
  double time = 0;

  [[nodiscard]] auto key() const { return std::tie(function, file, line); }
};
/// A function's time on lines, and on none.
struct OnLines {
  double some = 0;
  double none = 0;
};

/// Times by line. Records come in runs of one line, and lines in runs of one function: what is added waits unsorted.
class TimesByLine {
 public:
  void add(const InLine& in) {
    if (!lines_.empty() && lines_.back().key() == in.key()) {
      lines_.back().time += in.time;
      return;
    }
    if (lines_.size() >= roomBeforeFolding_) {
      fold();
      roomBeforeFolding_ = std::max(roomBeforeFolding_, 2 * lines_.size());
    }
    lines_.push_back(in);
  }
  /// Each line once.
  [[nodiscard]] const std::vector<InLine>& folded() {
    fold();
    return lines_;
  }

 private:
  void fold() {
    std::stable_sort(lines_.begin(), lines_.end(), [](const InLine& a, const InLine& b) { return a.key() < b.key(); });
    std::size_t kept = 0;
    for (std::size_t i = 1; i < lines_.size(); ++i) {
      if (lines_[i].key() == lines_[kept].key()) {
        lines_[kept].time += lines_[i].time;
      } else {
        lines_[++kept] = lines_[i];
      }
    }
    if (!lines_.empty()) lines_.resize(kept + 1);
  }

  std::vector<InLine> lines_;
  std::size_t roomBeforeFolding_ = 1U << 20U;
};

class SurveyAnalysis final : public Analysis {
 public:
  SurveyAnalysis(Places& places, const Wishes& wishes) : places_(places), wishes_(wishes), tally_(places) {}

  void add(const Record& record) override {
    ++records_;
    total_ += record.weights[0];
    const bool inSite = tally_.addShareToSites(record);
    const bool inFunction = !record.stack.empty() && !record.stack.front().function.empty();
    if (inFunction) addToFunction(record.stack.front(), record.weights);
    if (!inSite && !inFunction) tally_.addPlaceless(record);
  }

  Outcome finish() override {
    tally_.spreadUnlined();
    Outcome outcome;
    outcome.remarks.push_back("times are in " + wishes_.unit + ", " + std::to_string(total_) + " in all");
    for (std::size_t i = 0; i < tally_.sites().size(); ++i) {
      addRow(outcome, siteDetail(places_.regions()[i]), tally_.sites()[i][0]);
    }
    std::vector<FunctionRow> functions = tally_.functions();
    outcome.lineTimes = lineTimes(functions);
    functions = weighty(std::move(functions), wishes_.atLeast, outcome.remarks);
    for (const FunctionRow& function : functions) {
      addRow(outcome, functionDetail(function), function.weights[0]);
    }
    rank(outcome.details);
    remarkPlaceless(tally_, records_, outcome.remarks);
    return outcome;
  }

 private:
  void addToFunction(const Place& place, const Weights& weights) {
    const std::size_t function = tally_.addToFunction(place, weights);
    if (function >= onLines_.size()) onLines_.resize(function + 1);
    (place.line == 0 ? onLines_[function].none : onLines_[function].some) += weights[0];
    if (place.line == 0 || places_.isLibrary(place.file)) return;
    lines_.add({function, places_.numberOf(place.file), place.line, weights[0]});
  }

  void addRow(Outcome& outcome, Detail detail, double time) const {
    detail.survey = {.cpuTime = time, .priority = priorityOf(total_ > 0 ? time / total_ : 0), .id = 0};
    outcome.details.push_back(std::move(detail));
  }

  /// A row's number is its rank by time.
  static void rank(std::vector<Detail>& details) {
    std::vector<kelvar_platform::SurveyRecord*> byTime;
    byTime.reserve(details.size());
    for (Detail& detail : details) byTime.push_back(&*detail.survey);
    std::stable_sort(byTime.begin(), byTime.end(),
                     [](const auto* a, const auto* b) { return a->cpuTime > b->cpuTime; });
    int id = 0;
    for (kelvar_platform::SurveyRecord* survey : byTime) survey->id = ++id;
  }

  /// As with sites, what a function did on no line is shared among its lines.
  [[nodiscard]] std::string lineTimes(const std::vector<FunctionRow>& functions) {
    std::string text;
    for (const InLine& in : lines_.folded()) {
      const OnLines& split = onLines_[in.function];
      const double time = split.some > 0 ? in.time * (1 + split.none / split.some) : in.time;
      appendLineTime(text, {places_.pathNumbered(in.file), in.line, functions[in.function].name, time});
    }
    return text;
  }

  Places& places_;
  const Wishes& wishes_;
  Tally tally_;
  TimesByLine lines_;
  std::vector<OnLines> onLines_;  // by function
  std::size_t records_ = 0;
  double total_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> surveyOf(Places& places, const Wishes& wishes) {
  return std::make_unique<SurveyAnalysis>(places, wishes);
}

}  // namespace kelvar_import
