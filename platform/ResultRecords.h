#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "digestio.h"

/// The contents of a result on disk as plain values: one struct for each object of its files.
namespace kelvar_platform {

/// The run: when, where and on what it was collected. Unknown texts are left out; logs have default names.
struct RunRecord {
  std::optional<std::string> hostName = {};
  std::optional<std::string> operatingSystem = {};
  std::uint64_t collectionStartTime = 0;  ///< seconds since the epoch, as all times
  std::uint64_t collectionEndTime = 0;
  std::uint64_t finalizationStartTime = 0;
  std::uint64_t finalizationEndTime = 0;
  std::int32_t cpuCount = 0;                       ///< not negative
  std::uint64_t cpuFrequency = 0;                  ///< in hertz
  std::string applicationLog = "application.log";  ///< absolute, or relative to the result directory; as the others
  std::string collectorLog = "collector.log";
  std::string commandLog = "command.log";
};

/// What an analysis reports for the whole program.
struct ProgramRecord {
  digestio::SummaryDataKind dataKind = digestio::kSurvey;
  std::int32_t processors = 0;
  std::int32_t kovaThreads = 0;
  std::int32_t threadingParadigm = 7;  ///< 7 if none is known
  std::int32_t targetSystem = 3;       ///< 3 if none is stated
  double programMaxGain = 0.0;         ///< 0.0 if none is known
};

struct SurveyRecord {
  double cpuTime = 0.0;
  std::int32_t priority = 0;
  std::int32_t id = 0;
};

struct SurveyVectorizationRecord {
  double selfTime = 0.0;
  double totalTime = 0.0;
  std::int32_t state = 0;
  std::int32_t id = 0;
  std::int32_t priority = 0;
};

struct SuitabilityRecord {
  double selfTime = 0.0;
  double siteMaxGain = 0.0;
  double totalMaxGain = 0.0;
  std::int32_t cores = 0;
  std::uint32_t flags = 0;
};

struct CorrectnessRecord {
  std::int32_t errors = 0;
  std::array<std::int32_t, 2> warnings{};
};

struct MapRecord {
  std::array<std::int64_t, 3> strides{};
};

/// What an analysis reports for one source site. Doubles are finite, texts are UTF-8.
struct DetailRecord {
  digestio::SummaryDetailKind detailKind = digestio::kAnnotatedSite;
  std::int32_t annotationKind = 0;  ///< 0 to 18
  std::string label = {};
  std::string file = {};
  std::int32_t line = 0;  ///< not negative, as the column
  std::int32_t column = 0;
  std::optional<SurveyRecord> survey = {};
  std::optional<SurveyVectorizationRecord> surveyVectorization = {};
  std::optional<SuitabilityRecord> suitability = {};
  std::optional<CorrectnessRecord> dependencies = {};
  std::optional<MapRecord> map = {};
};

}  // namespace kelvar_platform
