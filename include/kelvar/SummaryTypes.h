/// The enumerations that the other headers use, and the macro that marks what the library exports.
#pragma once

#include <cstdint>

#define KELVAR_EXPORT __attribute__((visibility("default")))

/// The namespace carries the version, so that two releases can live in one process.
namespace kelvar_2_1_7 {

/// How well data matches today's annotations. A greater value is a better match.
enum SummaryDataStatus : std::int32_t {
  kNotPresent = 0,               ///< no data of the kind
  kUnusable = 1,                 ///< for the suite's tools; never set by this library
  kNoMatchCurrent = 2,           ///< analysis data that matched no current annotation
  kApproximateMatchCurrent = 3,  ///< matched a current annotation whose line has changed since
  kExactMatchCurrent = 4,        ///< matched a current annotation on the same line
  kCurrent = 5,                  ///< a current annotation itself
};
inline constexpr int kSummaryDataStatusCount = 6;

/// The orderings of the view. Where the greatest comes first, an item without the value counts as -1; where the least
/// comes first, as 2147483647. NaN values come after all others. Items that an ordering leaves equal come in a fixed
/// order: by place, then by annotation kind, detail kind, label, handle and the values of the analyses. Orderings that
/// end in the locator compare two items at one place first: by label if their annotation kinds are the same, else by
/// detail kind, then annotated sites by annotation kind and loops by their times, longest first.
enum SummaryMapping : std::int32_t {
  kSortLocator = 0,                       ///< file leaf, line, column, path
  kSortKind = 1,                          ///< detail kind, then annotation kind or time
  kSortLabel = 2,                         ///< label, byte by byte
  kSortSurveyCpuTime = 3,                 ///< longest first
  kSortSurveyPriority = 4,                ///< smallest first
  kSortSurveyId = 5,                      ///< smallest first
  kSortSurveyVectorizationSelfTime = 6,   ///< longest first, then by total time
  kSortSurveyVectorizationTotalTime = 7,  ///< longest first
  kSortSurveyVectorizationPriority = 8,   ///< greatest first
  kSortSuitabilitySelfTime = 9,           ///< longest first
  kSortSuitabilitySelfMaxGain = 10,       ///< greatest gain of the site first
  kSortSuitabilityTotalMaxGain = 11,      ///< greatest gain of the program first
  kSortCorrectnessErrors = 12,            ///< most errors first, then most warnings
  kSortCorrectnessWarnings = 13,          ///< most warnings first, both counts added
  kSortGeneralKindLocator = 14,           ///< by group of annotation kinds, then locator
};
inline constexpr int kSummaryMappingCount = 15;

}  // namespace kelvar_2_1_7

/// The release that the caller is compiled against.
namespace kelvar = kelvar_2_1_7;
