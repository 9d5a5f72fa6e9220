#include "MemoryDetail.h"

namespace kelvar_bench {

MemoryDetail::Figures::Figures(const Detail& detail)
    : selfTime_(detail.selfTime),
      totalTime_(detail.totalTime),
      siteGain_(detail.siteGain),
      programGain_(detail.programGain),
      bits_(detail.bits) {}

MemoryDetail::MemoryDetail(const GeneratedProject& project, const Detail& detail, Kinds kinds)
    : detailKind_(detail.detailKind),
      annotationKind_(detail.annotationKind),
      locator_(toolbelt::path_t(project.file(detail.place.file)), detail.place.line, detail.place.column),
      label_(GeneratedProject::label(detail.label)),
      kinds_(kinds),
      figures_(detail) {}

}  // namespace kelvar_bench
