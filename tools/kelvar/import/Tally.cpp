#include "Tally.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

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
  Spread& spread = functions_[numberOf(record.stack.front().function)].spread;
  if (record.stack.front().line == 0 && regions.empty()) {
    add(spread.unlined, record.weights);
    return false;
  }
  spread.lined += sum(record.weights);
  for (const std::size_t region : regions) {
    auto in = std::find_if(spread.inSites.begin(), spread.inSites.end(),
                           [=](const auto& one) { return one.first == region; });
    if (in == spread.inSites.end()) in = spread.inSites.insert(in, {region, 0.0});
    in->second += sum(record.weights);
  }
  return addToSites(record);
}

void Tally::spreadUnlined() {
  for (Function& function : functions_) {
    const Spread spread = std::exchange(function.spread, {});
    if (spread.lined <= 0) continue;
    for (const auto& [region, lined] : spread.inSites) {
      for (std::size_t i = 0; i < spread.unlined.size(); ++i) {
        sites_[region][i] += spread.unlined[i] * lined / spread.lined;
      }
    }
  }
}

std::size_t Tally::numberOf(const std::string& function) {
  if (lastName_ && *lastName_ == function) return lastNumber_;
  const auto [found, isNew] = numbers_.try_emplace(function, functions_.size());
  if (isNew) functions_.push_back({.name = plainName(function), .files = {}, .weights = {}, .spread = {}});
  lastName_ = &found->first;
  lastNumber_ = found->second;
  return lastNumber_;
}

std::size_t Tally::addToFunction(const Place& place, const Weights& weights) {
  const std::size_t number = numberOf(place.function);
  Function& function = functions_[number];
  add(function.weights, weights);
  if (place.file.empty()) return number;
  const std::size_t file = places_.numberOf(place.file);
  auto in = std::find_if(function.files.begin(), function.files.end(),
                         [file](const InFile& candidate) { return candidate.number == file; });
  if (in == function.files.end()) {
    const std::string& path = places_.pathOf(place.file);
    in = function.files.insert(in, {file, &path, places_.isLibrary(place.file), place.line, 0});
  }
  if (place.line > 0 && (in->line == 0 || place.line < in->line)) in->line = place.line;
  in->weight += sum(weights);
  return number;
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
