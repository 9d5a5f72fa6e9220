#include "AggregateSummaryResultImpl.h"

#include <cmath>

namespace kelvar_2_1_7 {

namespace {

using Results = std::vector<SummaryResult*>;

/// What the results that state a value agree on; `unknown` when none states one or two differ.
template <class T>
T agreed(const Results& results, T (SummaryResult::*value)() const, const T& unknown = T()) {
  T answer = unknown;
  for (const SummaryResult* result : results) {
    T stated = (result->*value)();
    if (stated == unknown) continue;
    if (answer == unknown) {
      answer = std::move(stated);
    } else if (stated != answer) {
      return unknown;
    }
  }
  return answer;
}

}  // namespace

int AggregateSummaryResultImpl::resultCount() const {
  return static_cast<int>(results_.size());
}

SummaryResult* AggregateSummaryResultImpl::result(int index) const {
  return results_[static_cast<std::size_t>(index)];
}

std::uint64_t AggregateSummaryResultImpl::collectionTime() const {
  return agreed(results_, &SummaryResult::collectionTime);
}

std::uint64_t AggregateSummaryResultImpl::collectionDuration() const {
  return agreed(results_, &SummaryResult::collectionDuration);
}

std::uint64_t AggregateSummaryResultImpl::finalizationTime() const {
  return agreed(results_, &SummaryResult::finalizationTime);
}

std::uint64_t AggregateSummaryResultImpl::finalizationDuration() const {
  return agreed(results_, &SummaryResult::finalizationDuration);
}

std::string AggregateSummaryResultImpl::hostName() const {
  return agreed(results_, &SummaryResult::hostName);
}

int AggregateSummaryResultImpl::cpuCount() const {
  return agreed(results_, &SummaryResult::cpuCount);
}

std::uint64_t AggregateSummaryResultImpl::cpuFrequency() const {
  return agreed(results_, &SummaryResult::cpuFrequency);
}

std::string AggregateSummaryResultImpl::operatingSystem() const {
  return agreed(results_, &SummaryResult::operatingSystem);
}

std::string AggregateSummaryResultImpl::applicationLog() const {
  return agreed(results_, &SummaryResult::applicationLog);
}

std::string AggregateSummaryResultImpl::collectorLog() const {
  return agreed(results_, &SummaryResult::collectorLog);
}

std::string AggregateSummaryResultImpl::commandLog() const {
  return agreed(results_, &SummaryResult::commandLog);
}

bool AggregateSummaryResultImpl::likelyDebugInfoMissing() const {
  bool any = false;
  for (const SummaryResult* result : results_) any |= result->likelyDebugInfoMissing();
  return any;
}

int AggregateSummaryResultImpl::threading_paradigm() const {
  return agreed(results_, &SummaryResult::threading_paradigm, kUnknownParadigm);
}

int AggregateSummaryResultImpl::num_processors() const {
  return agreed(results_, &SummaryResult::num_processors);
}

int AggregateSummaryResultImpl::num_kova_threads() const {
  return agreed(results_, &SummaryResult::num_kova_threads);
}

int AggregateSummaryResultImpl::target_system() const {
  // The first target counts even where a later result states another one: a program is analysed for one target, and
  // the results that were collected first say which.
  for (const SummaryResult* result : results_) {
    const int target = result->target_system();
    if (target != kUnknownTarget) return target;
  }
  return 0;
}

double AggregateSummaryResultImpl::programMaxGain() const {
  // The geometric mean is the mean of factors. Without any, 0 to the power of 1/0 is 0.
  double product = 0.0;
  double count = 0.0;
  for (const SummaryResult* result : results_) {
    const double gain = result->programMaxGain();
    if (gain == 0.0) continue;
    product = product == 0.0 ? gain : product * gain;
    count += 1.0;
  }
  return std::pow(product, count == 0.0 ? HUGE_VAL : 1.0 / count);
}

}  // namespace kelvar_2_1_7
