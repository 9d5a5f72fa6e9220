/// A suite's summary access.
#pragma once

#include <sitenotes.h>

#include <cstdint>
#include <string>

namespace digestio {

SUITE_ENUM SummaryDataKind : std::int32_t{};
SUITE_ENUM SummaryDetailKind : std::int32_t{};

struct SuitabilityProjectOptions;

struct SurveyDetail {
  virtual double cpuTime() SUITE_CONST = 0;
  virtual int priority() SUITE_CONST = 0;
  virtual int id() SUITE_CONST = 0;
};

struct SurveyVectorizationDetail {
  virtual int state() SUITE_CONST = 0;
  virtual double selfTime() SUITE_CONST = 0;
  virtual double totalTime() SUITE_CONST = 0;
  virtual int id() SUITE_CONST = 0;
  virtual int priority() SUITE_CONST = 0;
};

struct SuitabilityDetail {
  virtual double selfTime() SUITE_CONST = 0;
  virtual int cores() SUITE_CONST = 0;
  virtual std::uint32_t flags() SUITE_CONST = 0;
  virtual double siteMaxGain() SUITE_CONST = 0;
  virtual double totalMaxGain() SUITE_CONST = 0;
};

struct CorrectnessDetail {
  virtual int errors() SUITE_CONST = 0;
  virtual int warnings(int index) SUITE_CONST = 0;
};

struct MapDetail {
  virtual std::int64_t strides(int index) SUITE_CONST = 0;
};

/// Nobody deletes a detail through this: its first two entries are no destructor's.
class SummaryDetail {
 public:
  virtual void attach() = 0;
  virtual void detach() = 0;
  virtual SummaryDetailKind detailKind() const = 0;
  virtual sitenotes::annotation_t::kind_t annotationKind() const = 0;
  virtual sitenotes::locator_t locator() const = 0;
  virtual std::string label() const = 0;
  virtual SurveyDetail* surveyView() const = 0;
  virtual SurveyVectorizationDetail* surveyVectorizationView() const = 0;
  virtual SuitabilityDetail* suitabilityView() const = 0;
  virtual CorrectnessDetail* correctnessView() const = 0;
  virtual MapDetail* mapView() const = 0;

 protected:
  ~SummaryDetail() = default;
};

class SummaryCollection {
 public:
  virtual ~SummaryCollection() = default;
  static SummaryCollection* load(std::string path);

  virtual SummaryDataKind dataKind() const = 0;
  virtual std::string description() const = 0;
  virtual int num_processors() const = 0;
  virtual int num_kova_threads() const = 0;
  virtual int threading_paradigm() const = 0;
  virtual int target_system() const = 0;
  virtual double programMaxGain() const = 0;
  virtual int detailCount() const = 0;
  virtual SummaryDetail* detail(int index) const = 0;
};

}  // namespace digestio
