#include "Program.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "AnnotationHistory.h"
#include "OfSize.h"
#include "items/LiveAnnotations.h"
#include "items/joining/Join.h"

namespace kelvar_bench {

using digestio::SummaryDataKind;
using kelvar_2_1_7::SummaryItemImpl;
using kelvar_2_1_7::SummaryItems;

namespace {

/// The edits as the platform keeps them after it has read a database.
boost::shared_ptr<const kelvar_platform::AnnotationHistory> historyOf(const GeneratedProject& project) {
  const auto history = boost::make_shared<kelvar_platform::AnnotationHistory>();
  std::int64_t revision = 0;
  for (const Edit& edit : project.edits()) {
    const std::string label = GeneratedProject::label(edit.label);
    history->append({.revision = ++revision,
                     .sequence = static_cast<std::int64_t>(edit.sequence),
                     .alive = edit.alive,
                     .disabled = edit.disabled,
                     .kind = edit.kind,
                     .label = label,
                     .file = project.file(edit.place.file),
                     .line = edit.place.line,
                     .column = edit.place.column});
  }
  return history;
}

boost::shared_ptr<sitenotes::database_t> asOf(boost::shared_ptr<const kelvar_platform::AnnotationHistory> history,
                                              std::size_t revision) {
  return boost::make_shared<kelvar_platform::AnnotationState>(std::move(history), static_cast<std::int64_t>(revision));
}

}  // namespace

Program::Program(std::size_t sites) : project_(sites, kSeed) {
  const auto history = historyOf(project_);
  annotations_ = asOf(history, project_.edits().size());
  state_ = asOf(history, project_.recordedRevision());
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    MemoryDetail::Kinds kinds{};
    kinds[kind] = true;
    details_[kind].reserve(project_.details(kind).size());
    for (const Detail& detail : project_.details(kind)) details_[kind].emplace_back(project_, detail, kinds);
  }
}

SummaryItems Program::annotated() const {
  SummaryItems items;
  kelvar_2_1_7::forEachLiveAnnotation(annotations_, [&](auto annotation, unsigned long handle) {
    items.append(new SummaryItemImpl(nullptr, std::move(annotation), handle, kelvar_2_1_7::kCurrent, false, false,
                                     false, false));
  });
  return items;
}

SummaryItems Program::collected(SummaryDataKind kind) {
  SummaryItems items;
  for (MemoryDetail& detail : details_[kind]) items.append(new SummaryItemImpl(nullptr, &detail, nullptr, 0UL));
  const bool survey = kind == digestio::kSurvey;
  kelvar_2_1_7::forEachLiveAnnotation(state_, [&](auto annotation, unsigned long handle) {
    items.append(new SummaryItemImpl(nullptr, std::move(annotation), handle, kelvar_2_1_7::kNoMatchCurrent, survey,
                                     kind == digestio::kSuitability, kind == digestio::kCorrectness,
                                     kind == digestio::kMap));
  });
  return items;
}

SummaryItems Program::joined() {
  SummaryItems items = annotated();
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    SummaryItems incoming = collected(kind);
    incoming.exactMerge(kind);
    kelvar_2_1_7::join(items, incoming);
  }
  return items;
}

Program& program(std::size_t sites) {
  return ofSize<Program>(sites);
}

}  // namespace kelvar_bench
