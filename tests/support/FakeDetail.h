#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "digestio.h"
#include "support/Faults.h"

namespace support {

using Kind = sitenotes::annotation_t::kind_t;

/// `file:line` or `file:line:column`; the null locator for an empty text.
[[nodiscard]] sitenotes::locator_t at(const std::string& place);

struct Survey {
  double cpuTime = 0;
  int priority = 0;
  int id = 0;
};
struct Vectorization {
  int state = 0;
  double selfTime = 0;
  double totalTime = 0;
  int id = 0;
  int priority = 0;
};
struct Suitability {
  double selfTime = 0;
  int cores = 0;
  std::uint32_t flags = 0;
  double siteMaxGain = 0;
  double totalMaxGain = 0;
};
struct Correctness {
  int errors = 0;
  int warnings[2] = {0, 0};
};
struct Strides {
  std::int64_t strides[3] = {0, 0, 0};
};

/// A detail with any of the five views and any values.
class FakeDetail final : public digestio::SummaryDetail {
 public:
  FakeDetail(std::string label, const std::string& place) : label_(std::move(label)), place_(at(place)) {}

  FakeDetail& kind(digestio::SummaryDetailKind kind) { return with(kind_, kind); }
  FakeDetail& reports(Kind kind) { return with(reported_, kind); }  ///< the annotation kind that the analysis reports
  FakeDetail& survey(Survey values = {}) { return with(survey_, std::make_shared<SurveyView>(values)); }
  FakeDetail& vectorization(Vectorization values = {}) { return with(loop_, std::make_shared<LoopView>(values)); }
  FakeDetail& suitability(Suitability values = {}) { return with(gain_, std::make_shared<GainView>(values)); }
  FakeDetail& correctness(Correctness values = {}) { return with(fault_, std::make_shared<FaultView>(values)); }
  FakeDetail& map(Strides values = {}) { return with(map_, std::make_shared<StrideView>(values)); }
  FakeDetail& missing() { return with(missing_, true); }  ///< the collection returns null in its place
  [[nodiscard]] bool isMissing() const noexcept { return missing_; }

  digestio::SummaryDetailKind detailKind() const override { return answer("detail", "detailKind", kind_); }
  Kind annotationKind() const override { return answer("detail", "annotationKind", reported_); }
  sitenotes::locator_t locator() const override { return answer("detail", "locator", place_); }
  std::string label() const override { return answer("detail", "label", label_); }
  digestio::SurveyDetail* surveyView() const override { return answer("detail", "surveyView", survey_.get()); }
  digestio::SurveyVectorizationDetail* surveyVectorizationView() const override {
    return answer("detail", "surveyVectorizationView", loop_.get());
  }
  digestio::SuitabilityDetail* suitabilityView() const override {
    return answer("detail", "suitabilityView", gain_.get());
  }
  digestio::CorrectnessDetail* correctnessView() const override {
    return answer("detail", "correctnessView", fault_.get());
  }
  digestio::MapDetail* mapView() const override { return answer("detail", "mapView", map_.get()); }

 private:
  template <class View, class Values>
  struct Record : View {
    explicit Record(Values v) : values(v) {}
    Values values;
  };
  struct SurveyView final : Record<digestio::SurveyDetail, Survey> {
    using Record::Record;
    double cpuTime() const override { return answer("survey", "cpuTime", values.cpuTime); }
    int priority() const override { return answer("survey", "priority", values.priority); }
    int id() const override { return answer("survey", "id", values.id); }
  };
  struct LoopView final : Record<digestio::SurveyVectorizationDetail, Vectorization> {
    using Record::Record;
    int state() const override { return answer("vectorization", "state", values.state); }
    double selfTime() const override { return answer("vectorization", "selfTime", values.selfTime); }
    double totalTime() const override { return answer("vectorization", "totalTime", values.totalTime); }
    int id() const override { return answer("vectorization", "id", values.id); }
    int priority() const override { return answer("vectorization", "priority", values.priority); }
  };
  struct GainView final : Record<digestio::SuitabilityDetail, Suitability> {
    using Record::Record;
    double selfTime() const override { return answer("suitability", "selfTime", values.selfTime); }
    int cores() const override { return answer("suitability", "cores", values.cores); }
    std::uint32_t flags() const override { return answer("suitability", "flags", values.flags); }
    double siteMaxGain() const override { return answer("suitability", "siteMaxGain", values.siteMaxGain); }
    double totalMaxGain() const override { return answer("suitability", "totalMaxGain", values.totalMaxGain); }
  };
  struct FaultView final : Record<digestio::CorrectnessDetail, Correctness> {
    using Record::Record;
    int errors() const override { return answer("correctness", "errors", values.errors); }
    int warnings(int index) const override {
      return answer("correctness", "warnings", values.warnings[index == 0 ? 0 : 1], std::to_string(index));
    }
  };
  struct StrideView final : Record<digestio::MapDetail, Strides> {
    using Record::Record;
    std::int64_t strides(int index) const override {
      if (index < 0 || index > 2) throw std::out_of_range("strides");
      return answer("map", "strides", values.strides[index], std::to_string(index));
    }
  };

  template <class Member, class Value>
  FakeDetail& with(Member& member, Value value) {
    member = std::move(value);
    return *this;
  }

  std::string label_;
  sitenotes::locator_t place_;
  digestio::SummaryDetailKind kind_ = digestio::kAnnotatedSite;
  Kind reported_ = sitenotes::annotation_t::parallel;
  bool missing_ = false;
  // Shared by copies of the detail; never modified.
  std::shared_ptr<SurveyView> survey_;
  std::shared_ptr<LoopView> loop_;
  std::shared_ptr<GainView> gain_;
  std::shared_ptr<FaultView> fault_;
  std::shared_ptr<StrideView> map_;
};

[[nodiscard]] inline FakeDetail detail(std::string label = {}, const std::string& place = {}) {
  return {std::move(label), place};
}

}  // namespace support
