#include "LoadedProject.h"
#include "Measure.h"

namespace kelvar_bench {

void registerLoad(std::size_t sites) {
  const auto items = [=] { return sites; };
  const auto project = [=] { return projectOnDisk(sites); };
  measure("load", sites, items, project, [](const std::string& path) { return load(path); });
  measure("load-and-report", sites, items, project,
          [](const std::string& path) { return load(path)->asString(false); });
}

}  // namespace kelvar_bench
