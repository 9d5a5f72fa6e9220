#pragma once

#include <cstdint>
#include <string>

#include "digestio.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// When, where and on what an analysis ran: one loaded result, or an aggregate of several.
///
/// An aggregate answers the value on which its results agree. Results without the value (0, an empty text, paradigm 7)
/// are left out; if two differ, or none has the value, the answer is that same neutral value. Exceptions are noted
/// at the operation. Results belong to the SummaryData that they come from and live as long as it does.
/// Times are seconds since the epoch, durations seconds, frequencies hertz, as the result directory has them.
class KELVAR_EXPORT SummaryResult {
 public:
  /// The number of results in an aggregate; 0 for a single result.
  [[nodiscard]] virtual int resultCount() const = 0;
  /// One result of an aggregate, 0 <= index < resultCount(), in the order they were added; null for a single result.
  [[nodiscard]] virtual SummaryResult* result(int index) const = 0;
  /// The loaded collection, owned by the result; null for an aggregate.
  [[nodiscard]] virtual digestio::SummaryCollection* summaryCollection() const = 0;

  [[nodiscard]] virtual std::uint64_t collectionTime() const = 0;
  /// 0 if no end was recorded. An end before the start wraps around.
  [[nodiscard]] virtual std::uint64_t collectionDuration() const = 0;
  [[nodiscard]] virtual std::uint64_t finalizationTime() const = 0;
  /// 0 if no end was recorded. An end before the start wraps around.
  [[nodiscard]] virtual std::uint64_t finalizationDuration() const = 0;

  [[nodiscard]] virtual std::string hostName() const = 0;
  [[nodiscard]] virtual int cpuCount() const = 0;
  [[nodiscard]] virtual std::uint64_t cpuFrequency() const = 0;
  [[nodiscard]] virtual std::string operatingSystem() const = 0;

  /// Paths of log files; empty for a file that did not exist when the result was loaded.
  [[nodiscard]] virtual std::string applicationLog() const = 0;
  [[nodiscard]] virtual std::string collectorLog() const = 0;
  [[nodiscard]] virtual std::string commandLog() const = 0;

  /// For an aggregate: whether any of its results is likely to lack debug information.
  [[nodiscard]] virtual bool likelyDebugInfoMissing() const = 0;

  /// 7 if none is known.
  [[nodiscard]] virtual int threading_paradigm() const = 0;
  [[nodiscard]] virtual int num_processors() const = 0;
  [[nodiscard]] virtual int num_kova_threads() const = 0;
  /// 3 if a single result states none. An aggregate answers the first target that a result states, else 0.
  [[nodiscard]] virtual int target_system() const = 0;
  /// By which factor the whole program could become faster; 0.0 if unknown. An aggregate answers the geometric mean of
  /// the gains that are not 0.
  [[nodiscard]] virtual double programMaxGain() const = 0;

  virtual ~SummaryResult() = default;
};

}  // namespace kelvar_2_1_7
