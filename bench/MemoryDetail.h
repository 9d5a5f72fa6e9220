#pragma once

#include <cstdint>
#include <string>

#include "GeneratedProject.h"
#include "PerKind.h"
#include "digestio.h"

namespace kelvar_bench {

/// A detail in memory, with views of the given kinds.
class MemoryDetail final : public digestio::SummaryDetail {
 public:
  using Kinds = kelvar_2_1_7::PerKind<bool>;

  MemoryDetail(const GeneratedProject& project, const Detail& detail, Kinds kinds);

  digestio::SummaryDetailKind detailKind() const override { return detailKind_; }
  sitenotes::annotation_t::kind_t annotationKind() const override { return annotationKind_; }
  sitenotes::locator_t locator() const override { return locator_; }
  std::string label() const override { return label_; }
  digestio::SurveyDetail* surveyView() const override { return view(digestio::kSurvey); }
  digestio::SurveyVectorizationDetail* surveyVectorizationView() const override {
    return view(digestio::kSurveyVectorization);
  }
  digestio::SuitabilityDetail* suitabilityView() const override { return view(digestio::kSuitability); }
  digestio::CorrectnessDetail* correctnessView() const override { return view(digestio::kCorrectness); }
  digestio::MapDetail* mapView() const override { return view(digestio::kMap); }

 private:
  struct Figures final : digestio::SurveyDetail,
                         digestio::SurveyVectorizationDetail,
                         digestio::SuitabilityDetail,
                         digestio::CorrectnessDetail,
                         digestio::MapDetail {
    explicit Figures(const Detail& detail);
    double cpuTime() const override { return selfTime_; }
    double selfTime() const override { return selfTime_; }
    double totalTime() const override { return totalTime_; }
    double siteMaxGain() const override { return siteGain_; }
    double totalMaxGain() const override { return programGain_; }
    int priority() const override { return cut(0, 5); }
    int id() const override { return cut(3, 100); }
    int state() const override { return cut(5, 4); }
    int cores() const override { return cut(8, 32); }
    std::uint32_t flags() const override { return bits_ % 32; }
    int errors() const override { return cut(0, 7); }
    int warnings(int index) const override { return cut(3 + static_cast<unsigned>(index), 11); }
    std::int64_t strides(int index) const override { return cut(8 * static_cast<unsigned>(index), 1000); }

   private:
    [[nodiscard]] int cut(unsigned shift, unsigned count) const { return static_cast<int>((bits_ >> shift) % count); }

    double selfTime_;
    double totalTime_;
    double siteGain_;
    double programGain_;
    std::uint32_t bits_;
  };

  [[nodiscard]] Figures* view(digestio::SummaryDataKind kind) const { return kinds_[kind] ? &figures_ : nullptr; }

  digestio::SummaryDetailKind detailKind_;
  sitenotes::annotation_t::kind_t annotationKind_;
  sitenotes::locator_t locator_;
  std::string label_;
  Kinds kinds_;
  mutable Figures figures_;  // the interface returns it from a const detail
};

}  // namespace kelvar_bench
