#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <ctime>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Taken.h"

namespace kelvar_bench {

/// Processor time of this thread, in seconds: not affected by other work on the machine.
inline double processorTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// What is measured at one size. Yardsticks are stages too.
struct Stage {
  std::string name;
  std::size_t sites;
  std::function<void(benchmark::State&)> run;
};

/// All stages, in the order in which they were added.
inline std::vector<Stage>& stages() {
  static std::vector<Stage> stages;
  return stages;
}

/// Adds a stage. Each round calls `prepare()` and then, measured, `work(prepared)`; their results are destroyed after
/// the clock has stopped. Values per item are divided by `items()`. One round before the first repetition is not
/// measured: it has to get its memory from the kernel, and large stages have too few rounds to average that out.
template <class Items, class Prepare, class Work>
void measure(const std::string& name, std::size_t sites, Items items, Prepare prepare, Work work) {
  const auto run = [=](benchmark::State& state) {
    Taken total;
    for ([[maybe_unused]] auto round : state) {
      auto prepared = prepare();
      const Taken before = taken();
      const double start = processorTime();
      auto result = work(prepared);
      benchmark::DoNotOptimize(result);
      benchmark::ClobberMemory();
      state.SetIterationTime(processorTime() - start);
      total += taken() - before;
    }
    const auto count = static_cast<double>(items());
    const double each = static_cast<double>(state.iterations()) * count;
    state.counters["items"] = count;
    state.counters["allocations/item"] = static_cast<double>(total.calls) / each;
    state.counters["bytes/item"] = static_cast<double>(total.bytes) / each;
  };
  stages().push_back({name, sites, run});
}

/// For stages without preparation.
inline int nothing() {
  return 0;
}

/// Each adds the stage and its yardsticks for one size.
void registerPopulation(std::size_t sites);
void registerCollection(std::size_t sites);
void registerFold(std::size_t sites);
void registerJoin(std::size_t sites);
void registerView(std::size_t sites);
void registerFirstSort(std::size_t sites);
void registerTable(std::size_t sites);
void registerLoad(std::size_t sites);
void registerSqlite(std::size_t sites);

}  // namespace kelvar_bench
