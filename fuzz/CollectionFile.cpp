/// Any bytes as collection.json: either the whole collection can be read, or it is refused with a place.
#include <cmath>
#include <cstdlib>
#include <memory>

#include "Diagnosis.h"
#include "ScratchFile.h"
#include "digestio.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void readViews(const digestio::SummaryDetail& detail) {
  if (const auto* survey = detail.surveyView()) require(std::isfinite(survey->cpuTime()));
  if (const auto* loop = detail.surveyVectorizationView()) {
    require(std::isfinite(loop->selfTime()) && std::isfinite(loop->totalTime()));
  }
  if (const auto* gain = detail.suitabilityView()) {
    require(std::isfinite(gain->selfTime()) && std::isfinite(gain->siteMaxGain()) &&
            std::isfinite(gain->totalMaxGain()));
  }
  if (const auto* problems = detail.correctnessView()) {
    static_cast<void>(problems->errors() ^ problems->warnings(0) ^ problems->warnings(1));
  }
  if (const auto* access = detail.mapView()) {
    static_cast<void>(access->strides(0) ^ access->strides(1) ^ access->strides(2));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("collection.json");
  scratch.write({data, size});
  const std::unique_ptr<digestio::SummaryCollection> collection(digestio::SummaryCollection::load(scratch.directory()));
  const auto refusals = kelvar_platform::takeRefusals();
  require((collection == nullptr) == (refusals.size() == 1));
  if (!collection) {
    require(refusals[0].file == scratch.file() && refusals[0].expected.empty() != refusals[0].problem.empty());
    return 0;
  }
  require(collection->dataKind() >= 0 && collection->dataKind() < digestio::kSummaryDataKindCount);
  for (int i = 0; i < collection->detailCount(); ++i) {
    const digestio::SummaryDetail& detail = *collection->detail(i);
    require(detail.detailKind() >= 0 && detail.detailKind() < digestio::kSummaryDetailKindCount);
    require(detail.annotationKind() >= 0 && detail.annotationKind() < sitenotes::annotation_t::all_kinds);
    require(detail.locator().get_line() >= 0 && detail.locator().get_column() >= 0);
    static_cast<void>(detail.label());
    readViews(detail);
  }
  return 0;
}
