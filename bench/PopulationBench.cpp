#include <boost/make_shared.hpp>

#include "Annotations.h"
#include "LoadedProject.h"
#include "Measure.h"
#include "Program.h"
#include "kelvar/SummaryData.h"

namespace kelvar_bench {

void registerPopulation(std::size_t sites) {
  const auto items = [=] { return sites; };
  measure(
      "population/memory", sites, items, [=] { return program(sites).annotations(); },
      [](const auto& annotations) { return boost::make_shared<kelvar::SummaryData>(annotations); });
  measure(
      "population/disk", sites, items, [=] { return projectOnDisk(sites) + "/annotations.db"; },
      [](const std::string& file) {
        return boost::make_shared<kelvar::SummaryData>(kelvar_platform::openAnnotationDatabase(file));
      });
}

}  // namespace kelvar_bench
