#include "Tally.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

#include "Demangle.h"

namespace kelvar_readers {

namespace {

void add(Weights& to, const Weights& weights) {
  for (std::size_t i = 0; i < to.size(); ++i) to[i] += weights[i];
}

}  // namespace

double sum(const Weights& weights) {
  return std::accumulate(weights.begin(), weights.end(), 0.0);
}

Tally::Tally(Places& places)
    : places_(places),
      sites_(places.regions().size()),
      lastReport_(places.regions().size()),
      lastRecord_(places.regions().size()) {}

bool Tally::addToSites(const Record& record) {
  const auto regions = places_.regionsAt(record.stack);
  for (const std::size_t region : regions) {
    if (record.report != 0 && lastReport_[region] == record.report) continue;
    lastReport_[region] = record.report;
    add(sites_[region], record.weights);
  }
  return !regions.empty();
}

const std::vector<std::size_t>& Tally::addToSitesOfStack(const Record& record) {
  ++record_;
  passed_.clear();
  for (const Frame* const frame : record.stack) {
    for (const std::size_t region : places_.regionsOf(*frame)) {
      if (std::exchange(lastRecord_[region], record_) == record_) continue;
      passed_.push_back(region);
      add(sites_[region], record.weights);
    }
  }
  return passed_;
}

std::size_t Tally::numberOf(const Frame& frame) {
  if (frame.id == 0) return numberOf(frame.function, frame.begin);
  if (frame.id >= ofFrames_.size()) ofFrames_.resize(std::max<std::size_t>(frame.id + 1, 2 * ofFrames_.size()));
  std::size_t& number = ofFrames_[frame.id];
  if (number == 0) number = numberOf(frame.function, frame.begin) + 1;
  return number - 1;
}

/// Two functions of the same name are different when they begin at different places.
std::size_t Tally::numberOf(const std::string& function, const Place& begin) {
  std::size_t number = 0;
  if (begin.line == 0) {
    number = numbers_.numberOf(function);
  } else {
    std::string key = function;
    key.append(1, '\0').append(begin.file).append(":").append(std::to_string(begin.line));
    number = numbers_.numberOf(key);
  }
  if (number == functions_.size()) {
    functions_.push_back({.name = plainName(function), .begin = begin, .files = {}, .weights = {}});
  }
  return number;
}

std::size_t Tally::addToFunction(const Frame& frame, const Weights& weights) {
  const std::size_t number = numberOf(frame);
  Function& function = functions_[number];
  add(function.weights, weights);
  const Place& place = frame.chain.front();
  if (function.begin.line == 0 && !place.file.empty()) addToFile(function, place, sum(weights));
  return number;
}

void Tally::addToFile(Function& function, const Place& place, double weight) {
  const std::size_t file = places_.numberOf(place.file);
  auto in = std::find_if(function.files.begin(), function.files.end(),
                         [file](const InFile& candidate) { return candidate.number == file; });
  if (in == function.files.end()) {
    const std::string& path = places_.pathOf(place.file);
    in = function.files.insert(in, {file, &path, places_.isLibrary(place.file), place.line, 0});
  }
  if (place.line > 0 && (in->line == 0 || place.line < in->line)) in->line = place.line;
  in->weight += weight;
}

void Tally::addPlaceless(const Record& record) {
  add(placeless_, record.weights);
  ++placelessCount_;
}

std::vector<FunctionRow> Tally::functions() const {
  std::vector<FunctionRow> rows;
  rows.reserve(functions_.size());
  for (const Function& function : functions_) {
    FunctionRow& row = rows.emplace_back(FunctionRow{.name = function.name, .file = {}, .weights = function.weights});
    if (function.begin.line > 0) {
      row.file = places_.pathOf(function.begin.file);
      row.line = function.begin.line;
      continue;
    }
    const auto home = std::max_element(function.files.begin(), function.files.end(), [](const auto& a, const auto& b) {
      return std::tuple(!a.library, a.weight) < std::tuple(!b.library, b.weight);
    });
    if (home == function.files.end()) continue;
    row.file = *home->path;
    row.line = home->line;
  }
  return rows;
}

}  // namespace kelvar_readers
