/// The suite's summary-access interfaces: what an analysis reports, one detail for each source site. A suite that has
/// its own header of this name puts it first on the include path.
#pragma once

// In brackets: a suite's own header of this name is taken, even though ours is in this folder.
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

/// What a detail describes.
enum SummaryDetailKind : std::int32_t {
  kAnnotatedSite = 0,
  kHotSpot = 1,
  kLoop = 2,
};
inline constexpr int kSummaryDetailKindCount = 3;

/// Settings of the suitability analysis. Declared here, never defined.
class SuitabilityProjectOptions;

/// The time that a site takes, in seconds.
class SurveyDetail {
 public:
  virtual double cpuTime() const = 0;
  virtual int priority() const = 0;
  virtual int id() const = 0;

 protected:
  ~SurveyDetail() = default;
};

/// A loop's vectorization and its times, in seconds.
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

/// What running a site in parallel could gain, as factors; the site's time in seconds.
class SuitabilityDetail {
 public:
  virtual double selfTime() const = 0;
  virtual int cores() const = 0;
  virtual std::uint32_t flags() const = 0;  ///< bits 0 to 4, shown under the letters STCLC
  virtual double siteMaxGain() const = 0;
  virtual double totalMaxGain() const = 0;

 protected:
  ~SuitabilityDetail() = default;
};

/// Problems of running a site in parallel.
class CorrectnessDetail {
 public:
  virtual int errors() const = 0;
  virtual int warnings(int index) const = 0;  ///< two counts, index 0 and 1

 protected:
  ~CorrectnessDetail() = default;
};

/// The memory access pattern of a site.
class MapDetail {
 public:
  virtual std::int64_t strides(int index) const = 0;  ///< three counts, index 0 to 2: unit, constant, varying

 protected:
  ~MapDetail() = default;
};

/// What one analysis reports for one source site. Owned by its collection.
class SummaryDetail {
 public:
  virtual ~SummaryDetail() = default;

  virtual SummaryDetailKind detailKind() const = 0;
  virtual sitenotes::annotation_t::kind_t annotationKind() const = 0;
  virtual sitenotes::locator_t locator() const = 0;
  virtual std::string label() const = 0;
  /// The views, one for each analysis; null if the detail has none of that kind.
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
  virtual void reserved() const = 0;  ///< the slot of an operation that the library does not call
  virtual int num_processors() const = 0;
  virtual int num_kova_threads() const = 0;
  virtual int threading_paradigm() const = 0;  ///< 7 if none is known
  virtual int target_system() const = 0;       ///< 3 if none is stated
  virtual double programMaxGain() const = 0;   ///< 0.0 if none is known
  virtual int detailCount() const = 0;
  /// The detail at `index`, 0 <= index < detailCount(). Owned by the collection, valid as long as it lives.
  virtual SummaryDetail* detail(int index) const = 0;
};

}  // namespace digestio
