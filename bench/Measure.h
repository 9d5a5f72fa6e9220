#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <ctime>
#include <string>
#include <utility>

#include "Taken.h"

namespace kelvar_bench {

/// Processor time of this thread, in seconds: other work on the machine does not count.
inline double processorTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Registers `NAME/SITES`. Each round calls `prepare()` and then, measured, `work(prepared)`; what both return goes
/// after the clock has stopped. `items()` is what the figures per item are divided by. A first round is not measured:
/// it finds none of its memory ready, and large stages have few others to make up for it.
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
  benchmark::RegisterBenchmark((name + '/' + std::to_string(sites)).c_str(), run)
      ->UseManualTime()
      ->MinWarmUpTime(0.001)
      ->MinTime(0.05)
      ->Unit(benchmark::kMillisecond);
}

/// For what needs no preparation.
inline int nothing() {
  return 0;
}

/// Each registers the stage and its yardsticks for one size.
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
