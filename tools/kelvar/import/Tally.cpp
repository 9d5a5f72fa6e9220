#include "Tally.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "Demangle.h"

namespace kelvar_import {

namespace {

void add(Weights& to, const Weights& weights) {
  for (std::size_t i = 0; i < to.size(); ++i) to[i] += weights[i];
}

}  // namespace

double sum(const Weights& weights) {
  return std::accumulate(weights.begin(), weights.end(), 0.0);
}

Tally::Tally(Places& places) : places_(places), sites_(places.regions().size()), lastReport_(places.regions().size()) {}

bool Tally::addToSites(const Record& record) {
  const auto regions = places_.regionsAt(record.stack);
  for (const std::size_t region : regions) {
    if (record.report != 0 && lastReport_[region] == record.report) continue;
    lastReport_[region] = record.report;
    add(sites_[region], record.weights);
  }
  return !regions.empty();
}

bool Tally::addShareToSites(const Record& record) {
  if (record.stack.empty() || record.stack.front().function.empty()) return addToSites(record);
  const auto regions = places_.regionsAt(record.stack);
  Spread& spread = spreads_[record.stack.front().function];
  if (record.stack.front().line == 0 && regions.empty()) {
    add(spread.unlined, record.weights);
    return false;
  }
  spread.lined += sum(record.weights);
  for (const std::size_t region : regions) spread.inSites[region] += sum(record.weights);
  return addToSites(record);
}

void Tally::spreadUnlined() {
  for (const auto& [function, spread] : spreads_) {
    if (spread.lined <= 0) continue;
    for (const auto& [region, lined] : spread.inSites) {
      for (std::size_t i = 0; i < spread.unlined.size(); ++i) {
        sites_[region][i] += spread.unlined[i] * lined / spread.lined;
      }
    }
  }
  spreads_.clear();
}

std::size_t Tally::addToFunction(const Place& place, const Weights& weights) {
  const auto [found, isNew] = numbers_.try_emplace(place.function, functions_.size());
  if (isNew) functions_.push_back({.name = plainName(place.function), .files = {}, .weights = {}});
  Function& function = functions_[found->second];
  add(function.weights, weights);
  if (place.file.empty()) return found->second;
  const std::size_t file = places_.numberOf(place.file);
  auto in = std::find_if(function.files.begin(), function.files.end(),
                         [file](const InFile& candidate) { return candidate.number == file; });
  if (in == function.files.end()) {
    const std::string& path = places_.pathOf(place.file);
    in = function.files.insert(in, {file, &path, places_.isLibrary(place.file), place.line, 0});
  }
  if (place.line > 0 && (in->line == 0 || place.line < in->line)) in->line = place.line;
  in->weight += sum(weights);
  return found->second;
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
    const auto home = std::max_element(function.files.begin(), function.files.end(), [](const auto& a, const auto& b) {
      return std::tuple(!a.library, a.weight) < std::tuple(!b.library, b.weight);
    });
    if (home == function.files.end()) continue;
    row.file = *home->path;
    row.line = home->line;
  }
  return rows;
}

}  // namespace kelvar_import
