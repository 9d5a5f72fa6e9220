#include <map>
#include <unordered_map>

#include "Sources.h"

namespace kelvar_readers {

namespace {

// Coz takes a sample for each millisecond of a thread's time.
constexpr double kSecondsASample = 0.001;

/// The sum of a line's experiments at one virtual speedup.
struct Trial {
  double duration = 0;
  double visits = 0;  // of the progress points
};

using Fields = std::unordered_map<std::string_view, std::string_view>;

std::string_view wanted(const Fields& fields, std::string_view key, const Input& input) {
  const auto found = fields.find(key);
  if (found == fields.end()) input.refuse(std::string(key) + "=");
  return found->second;
}

double number(const Fields& fields, std::string_view key, const Input& input) {
  std::string_view text = wanted(fields, key, input);
  const auto value = takeNumber<double>(text);
  if (!value || *value < 0 || !text.empty()) input.refuse(std::string(key) + "= and a number");
  return *value;
}

Place placeOf(std::string_view location) {
  Place place;
  const std::size_t colon = location.rfind(':');
  place.file = location.substr(0, colon);
  if (colon == std::string_view::npos) return place;
  std::string_view digits = location.substr(colon + 1);
  place.line = std::max(0, takeNumber<int>(digits).value_or(0));
  return place;
}

class CozReader {
 public:
  CozReader(Input& input, const Sink& sink) : input_(input), sink_(sink) {}

  void read() {
    while (const auto line = input_.nextLine()) readLine(*line);
    if (!any_) input_.refuse("line 1", "a line of a profile.coz");
    for (const auto& [location, trials] : experiments_) give(location, trials);
    for (const auto& [location, seconds] : seconds_) {
      if (!experiments_.contains(location)) give(location, {seconds, 0, 0});
    }
  }

 private:
  void readLine(std::string_view line) {
    if (line.empty()) return;
    const std::string_view what = takeUntil(line, '\t');
    Fields fields;
    while (!line.empty()) {
      std::string_view value = takeUntil(line, '\t');
      const std::string_view key = takeUntil(value, '=');
      fields[key] = value;
    }
    if (what == "experiment") {
      const double speedup = number(fields, "speedup", input_);
      if (speedup > 1) input_.refuse("speedup= and a number from 0 to 1");
      trial_ = &experiments_[std::string(wanted(fields, "selected", input_))][speedup];
      trial_->duration += number(fields, "duration", input_);
    } else if (what == "throughput-point" || what == "progress-point") {
      if (!trial_) input_.refuse("an experiment before its progress points");
      trial_->visits += number(fields, "delta", input_);
    } else if (what == "samples") {
      seconds_[std::string(wanted(fields, "location", input_))] += number(fields, "count", input_) * kSecondsASample;
    } else if (what != "startup" && what != "runtime" && what != "latency-point") {
      input_.refuse("a line of a profile.coz");
    }
    any_ = true;
  }

  /// Compares the experiment with the greatest speedup below 100 % with the one without speedup.
  void give(const std::string& location, const std::map<double, Trial>& trials) {
    const auto seconds = seconds_.find(location);
    Weights weights{};
    weights[0] = seconds == seconds_.end() ? 0 : seconds->second;
    const auto base = trials.find(0.0);
    auto fastest = trials.lower_bound(1.0);
    if (base != trials.end() && fastest != trials.begin()) {
      --fastest;
      const double before = base->second.visits > 0 ? base->second.duration / base->second.visits : 0;
      const Trial& trial = fastest->second;
      const double after = trial.visits > 0 ? trial.duration / trial.visits : 0;
      if (fastest != base && before > 0 && after > 0) {
        weights[1] = 1 / (1 - fastest->first);
        weights[2] = before / after;
      }
    }
    give(location, weights);
  }

  void give(const std::string& location, const Weights& weights) {
    const Frame frame{.chain = {placeOf(location)}};
    sink_({.stack = {&frame}, .weights = weights});
  }

  Input& input_;
  const Sink& sink_;
  std::map<std::string, std::map<double, Trial>> experiments_;
  std::map<std::string, double> seconds_;
  Trial* trial_ = nullptr;  // of the experiment read last; elements of a map do not move
  bool any_ = false;
};

}  // namespace

void readCoz(Input& input, Reading&, const Sink& sink) {
  CozReader(input, sink).read();
}

}  // namespace kelvar_readers
