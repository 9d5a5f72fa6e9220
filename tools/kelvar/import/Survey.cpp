#include <algorithm>
#include <unordered_map>

#include "Analysis.h"
#include "Tally.h"

namespace kelvar_import {

namespace {

/// One line in one function, by their numbers.
struct LineKey {
  std::size_t function = 0;
  std::size_t file = 0;
  int line = 0;
  bool operator==(const LineKey&) const = default;
};
struct LineHash {
  std::size_t operator()(const LineKey& key) const noexcept {
    return (key.function * 0x9E3779B97F4A7C15U ^ key.file) * 0x9E3779B97F4A7C15U ^ static_cast<std::size_t>(key.line);
  }
};
/// A function's time on lines, and on none.
struct OnLines {
  double some = 0;
  double none = 0;
};
struct InLine {
  const std::string* file = nullptr;
  double time = 0;
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
    for (const FunctionRow& function : weighty(tally_.functions(), wishes_.atLeast, outcome.remarks)) {
      addRow(outcome, functionDetail(function), function.weights[0]);
    }
    rank(outcome.details);
    outcome.lines = lines();
    remarkPlaceless(tally_, records_, outcome.remarks);
    return outcome;
  }

 private:
  void addToFunction(const Place& place, const Weights& weights) {
    const std::size_t function = tally_.addToFunction(place, weights);
    if (function >= onLines_.size()) onLines_.resize(function + 1);
    (place.line == 0 ? onLines_[function].none : onLines_[function].some) += weights[0];
    if (place.line == 0 || places_.isLibrary(place.file)) return;
    InLine& line = lines_[{function, places_.numberOf(place.file), place.line}];
    line.file = &places_.pathOf(place.file);
    line.time += weights[0];
  }

  void addRow(Outcome& outcome, Detail detail, double time) const {
    detail.survey = {.cpuTime = time, .priority = priorityOf(total_ > 0 ? time / total_ : 0), .id = 0};
    outcome.details.push_back(std::move(detail));
  }

  /// A row's number is its rank by time.
  static void rank(std::vector<Detail>& details) {
    std::stable_sort(details.begin(), details.end(),
                     [](const Detail& a, const Detail& b) { return a.survey->cpuTime > b.survey->cpuTime; });
    int id = 0;
    for (Detail& detail : details) detail.survey->id = ++id;
  }

  /// As with sites, what a function did on no line is shared among its lines.
  [[nodiscard]] std::vector<LineTime> lines() const {
    const std::vector<FunctionRow> functions = tally_.functions();
    std::vector<LineTime> lines;
    lines.reserve(lines_.size());
    for (const auto& [key, in] : lines_) {
      const OnLines& split = onLines_[key.function];
      const double time = split.some > 0 ? in.time * (1 + split.none / split.some) : in.time;
      lines.push_back({*in.file, key.line, functions[key.function].name, time});
    }
    return lines;
  }

  Places& places_;
  const Wishes& wishes_;
  Tally tally_;
  std::unordered_map<LineKey, InLine, LineHash> lines_;
  std::vector<OnLines> onLines_;  // by function
  std::size_t records_ = 0;
  double total_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> surveyOf(Places& places, const Wishes& wishes) {
  return std::make_unique<SurveyAnalysis>(places, wishes);
}

}  // namespace kelvar_import
