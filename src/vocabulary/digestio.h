/// The suite's summary-access interfaces: what an analysis says, one detail for each source site. A suite that has
/// its own puts its own header of this name first on the include path.
#pragma once

// In brackets: a suite's own header of this name is taken, though ours lies beside.
#include <sitenotes.h>

#include <cstdint>
#include <string>

namespace digestio {

/// The analyses. Each value indexes every per-kind array of the library.
enum SummaryDataKind : std::int32_t {
  kSurvey = 0,
  kSurveyVectorization = 1,
  kSuitability = 2,
  kCorrectness = 3,  ///< called "dependencies" in texts
  kMap = 4,          ///< memory access patterns
};
inline constexpr int kSummaryDataKindCount = 5;

/// What sort of thing a detail describes.
enum SummaryDetailKind : std::int32_t {
  kAnnotatedSite = 0,
  kHotSpot = 1,
  kLoop = 2,
};
inline constexpr int kSummaryDetailKindCount = 3;

/// Settings of the suitability analysis. Only ever named here.
class SuitabilityProjectOptions;

/// Time that a site takes. Times are in seconds.
class SurveyDetail {
 public:
  virtual double cpuTime() const = 0;
  virtual int priority() const = 0;
  virtual int id() const = 0;

 protected:
  ~SurveyDetail() = default;
};

/// A loop's vectorization beside its times, in seconds.
class SurveyVectorizationDetail {
 public:
  virtual int state() const = 0;
  virtual double selfTime() const = 0;
  virtual double totalTime() const = 0;
  virtual int id() const = 0;
  virtual int priority() const = 0;

 protected:
  ~SurveyVectorizationDetail() = default;
};

/// What running a site in parallel could gain, as factors; its time in seconds.
class SuitabilityDetail {
 public:
  virtual double selfTime() const = 0;
  virtual int cores() const = 0;
  virtual std::uint32_t flags() const = 0;  ///< bits 0 to 4 stand under the heading letters STCLC
  virtual double siteMaxGain() const = 0;
  virtual double totalMaxGain() const = 0;

 protected:
  ~SuitabilityDetail() = default;
};

/// Problems that running a site in parallel would bring.
class CorrectnessDetail {
 public:
  virtual int errors() const = 0;
  virtual int warnings(int index) const = 0;  ///< two counts, index 0 and 1

 protected:
  ~CorrectnessDetail() = default;
};

/// How a site walks through memory.
class MapDetail {
 public:
  virtual std::int64_t strides(int index) const = 0;  ///< three counts, index 0 to 2: unit, constant, varying

 protected:
  ~MapDetail() = default;
};

/// What one analysis says of one source site. Owned by its collection.
class SummaryDetail {
 public:
  virtual ~SummaryDetail() = default;

  virtual SummaryDetailKind detailKind() const = 0;
  virtual sitenotes::annotation_t::kind_t annotationKind() const = 0;
  virtual sitenotes::locator_t locator() const = 0;
  virtual std::string label() const = 0;
  /// The detail's record of each analysis; null if it has none.
  virtual SurveyDetail* surveyView() const = 0;
  virtual SurveyVectorizationDetail* surveyVectorizationView() const = 0;
  virtual SuitabilityDetail* suitabilityView() const = 0;
  virtual CorrectnessDetail* correctnessView() const = 0;
  virtual MapDetail* mapView() const = 0;
};

/// One loaded analysis result.
class SummaryCollection {
 public:
  virtual ~SummaryCollection() = default;

  /// Loads the result at `path`; null when it cannot be loaded. The caller owns and deletes it.
  static SummaryCollection* load(std::string path);

  virtual SummaryDataKind dataKind() const = 0;
  virtual void reserved() const = 0;  ///< keeps the place of an operation that the library does not call
  virtual int num_processors() const = 0;
  virtual int num_kova_threads() const = 0;
  virtual int threading_paradigm() const = 0;  ///< 7: none is known
  virtual int target_system() const = 0;       ///< 3: none is stated
  virtual double programMaxGain() const = 0;   ///< 0.0: none is known
  virtual int detailCount() const = 0;
  /// The detail at `index`, 0 <= index < detailCount(). Owned by the collection, valid as long as it lives.
  virtual SummaryDetail* detail(int index) const = 0;
};

}  // namespace digestio
