#include <benchmark/benchmark.h>

#include <charconv>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "Measure.h"
#include "ProcessMemory.h"

namespace {

constexpr std::string_view kSites = "--sites=";

/// Removes `--sites=N` from the arguments, which may be repeated.
std::vector<std::size_t> takeSizes(int& argc, char** argv) {
  std::vector<std::size_t> sizes;
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    std::size_t sites = 0;
    if (argument.starts_with(kSites) &&
        std::from_chars(argument.data() + kSites.size(), argument.data() + argument.size(), sites).ec == std::errc())
      sizes.push_back(sites);
    else
      argv[kept++] = argv[i];
  }
  argc = kept;
  if (sizes.empty()) sizes = {1'000, 10'000, 100'000};
  return sizes;
}

/// Registers `NAME/SITES`, all sizes of a stage one after the other, so that they run under the same conditions.
void registerStages() {
  std::map<std::string, std::vector<const kelvar_bench::Stage*>> sizes;
  for (const kelvar_bench::Stage& stage : kelvar_bench::stages()) sizes[stage.name].push_back(&stage);
  for (const kelvar_bench::Stage& first : kelvar_bench::stages()) {
    for (const kelvar_bench::Stage* const stage : std::exchange(sizes[first.name], {})) {
      benchmark::RegisterBenchmark((stage->name + '/' + std::to_string(stage->sites)).c_str(), stage->run)
          ->UseManualTime()
          ->MinWarmUpTime(0.001)
          ->MinTime(0.05)
          ->Unit(benchmark::kMillisecond);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  using namespace kelvar_bench;
  // As the command does: otherwise page faults of the kernel would make lists of twice the size cost three times as
  // much.
  kelvar_platform::expectLargeLists();
  for (const std::size_t sites : takeSizes(argc, argv)) {
    for (const auto add : {registerPopulation, registerCollection, registerFold, registerJoin, registerFirstSort,
                           registerTable, registerSqlite, registerLoad, registerView})
      add(sites);
  }
  registerStages();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
