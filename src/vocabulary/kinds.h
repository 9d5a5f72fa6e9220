/// The kinds by number. Their values are what the library relies on: a suite's headers may name their enumerators as
/// they like, so nothing under src/ names any.
#pragma once

// In brackets: a suite's own header of this name is taken, even though ours is in this folder.
#include <digestio.h>
#include <sitenotes.h>

namespace kelvar_2_1_7 {

/// The analyses. Each value indexes every per-kind array.
inline constexpr auto kSurveyKind = static_cast<digestio::SummaryDataKind>(0);
inline constexpr auto kVectorizationKind = static_cast<digestio::SummaryDataKind>(1);
inline constexpr auto kSuitabilityKind = static_cast<digestio::SummaryDataKind>(2);
inline constexpr auto kCorrectnessKind = static_cast<digestio::SummaryDataKind>(3);
inline constexpr auto kMapKind = static_cast<digestio::SummaryDataKind>(4);
inline constexpr int kAnalysisKindCount = 5;

/// What an item describes: an annotated site, a hot spot or a loop.
inline constexpr auto kSiteDetail = static_cast<digestio::SummaryDetailKind>(0);
inline constexpr auto kHotSpotDetail = static_cast<digestio::SummaryDetailKind>(1);
inline constexpr auto kLoopDetail = static_cast<digestio::SummaryDetailKind>(2);
inline constexpr int kDetailKindCount = 3;

/// Those of the annotation kinds that mean something to the library.
inline constexpr auto kParallelAnnotation = static_cast<sitenotes::annotation_t::kind_t>(0);
inline constexpr auto kTaskAnnotation = static_cast<sitenotes::annotation_t::kind_t>(2);
inline constexpr auto kTaskloopAnnotation = static_cast<sitenotes::annotation_t::kind_t>(4);
inline constexpr int kAnnotationKindCount = 19;
/// Means every annotation kind at once in a filter.
inline constexpr auto kEveryAnnotation = static_cast<sitenotes::annotation_t::kind_t>(kAnnotationKindCount);

}  // namespace kelvar_2_1_7
