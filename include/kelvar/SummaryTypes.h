/// The enumerations that every other header speaks in, and the mark of what the library exports.
#pragma once

#include <cstdint>

#define KELVAR_EXPORT __attribute__((visibility("default")))

/// The namespace carries the version, so that two releases can live in one process.
namespace kelvar_2_1_7 {

/// How well something matches the source as it is annotated today. A greater value is a better match.
enum SummaryDataStatus : std::int32_t {
  kNotPresent = 0,               ///< no data of the kind
  kUnusable = 1,                 ///< kept for the suite's tools; nothing here produces it
  kNoMatchCurrent = 2,           ///< seen by an analysis, matched no current annotation
  kApproximateMatchCurrent = 3,  ///< matched a current annotation whose line has changed since
  kExactMatchCurrent = 4,        ///< matched a current annotation on the same line
  kCurrent = 5,                  ///< a current annotation itself
};
inline constexpr int kSummaryDataStatusCount = 6;

/// The orderings of the view. Items without the value that an ordering reads stand last; figures that are no number
/// stand behind even those. What an ordering leaves undecided is decided by place, then annotation kind, detail kind,
/// label, handle and what the analyses say: rows that differ have one order.
enum SummaryMapping : std::int32_t {
  kSortLocator = 0,                       ///< file leaf, line, column, path
  kSortKind = 1,                          ///< detail kind, then annotation kind or time
  kSortLabel = 2,                         ///< label, byte by byte
  kSortSurveyCpuTime = 3,                 ///< longest first
  kSortSurveyPriority = 4,                ///< least number first
  kSortSurveyId = 5,                      ///< least number first
  kSortSurveyVectorizationSelfTime = 6,   ///< longest first, then by total time
  kSortSurveyVectorizationTotalTime = 7,  ///< longest first
  kSortSurveyVectorizationPriority = 8,   ///< greatest number first
  kSortSuitabilitySelfTime = 9,           ///< longest first
  kSortSuitabilitySelfMaxGain = 10,       ///< greatest gain of the site first
  kSortSuitabilityTotalMaxGain = 11,      ///< greatest gain of the program first
  kSortCorrectnessErrors = 12,            ///< most errors first, then most warnings
  kSortCorrectnessWarnings = 13,          ///< most warnings first, both sorts together
  kSortGeneralKindLocator = 14,           ///< groups of like annotation kinds
};
inline constexpr int kSummaryMappingCount = 15;

}  // namespace kelvar_2_1_7

/// For callers that want the release they compile against.
namespace kelvar = kelvar_2_1_7;
