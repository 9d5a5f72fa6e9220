#include "ScanPlan.h"

#include "Planning.h"

namespace kelvar_tool {

std::string stepName(kelvar_sources::Step step, bool inSameFile) {
  using kelvar_sources::Step;
  const bool byFile = step != Step::elsewhere && step != Step::deadSite;
  return byFile && !inSameFile ? kRenamedFile : std::string(nameOf(step));
}

ScanPlan planOf(const ScanInput& input, const kelvar_platform::AnchoredSites& database) {
  Planning plan(input, database);
  acceptManualPlaces(plan);
  const std::vector<std::size_t> markers = findMarkers(plan);
  findLines(plan);
  for (const std::size_t marker : markers) {
    if (input.makeNew) plan.placement.addNew(marker);
  }
  plan.files.record(plan.record.edits());
  return plan.record.take();
}

}  // namespace kelvar_tool
