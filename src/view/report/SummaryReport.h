#pragma once

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "kelvar/SummaryResult.h"
#include "kelvar/SummaryTypes.h"
#include "view/ViewSettings.h"
#include "view/report/TextSink.h"

namespace kelvar_2_1_7 {

/// The content of a report. The view must be up to date when it is filled in.
struct SummaryReport {
  PerKind<SummaryDataStatus> statuses;
  const ViewSettings& settings;
  const SummaryItems& items;
  int processors;
  int threadingParadigm;
  double programMaxGain;
  const SummaryResult& aggregate;
  /// The result of each kind that an item of the view has a detail of; null for the others.
  PerKind<const SummaryResult*> results;

  /// Writes the report as text; with `verbose`, statuses and settings come first, and items say how they matched.
  void write(TextSink& out, bool verbose) const;
};

}  // namespace kelvar_2_1_7
