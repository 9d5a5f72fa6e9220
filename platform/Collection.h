#pragma once

#include <memory_resource>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ResultRecords.h"
#include "digestio.h"

namespace kelvar_platform {

class SurveyView final : public digestio::SurveyDetail {
 public:
  explicit SurveyView(const SurveyRecord& record) noexcept : record_(record) {}
  double cpuTime() const override { return record_.cpuTime; }
  int priority() const override { return record_.priority; }
  int id() const override { return record_.id; }

 private:
  SurveyRecord record_;
};

class SurveyVectorizationView final : public digestio::SurveyVectorizationDetail {
 public:
  explicit SurveyVectorizationView(const SurveyVectorizationRecord& record) noexcept : record_(record) {}
  int state() const override { return record_.state; }
  double selfTime() const override { return record_.selfTime; }
  double totalTime() const override { return record_.totalTime; }
  int id() const override { return record_.id; }
  int priority() const override { return record_.priority; }

 private:
  SurveyVectorizationRecord record_;
};

class SuitabilityView final : public digestio::SuitabilityDetail {
 public:
  explicit SuitabilityView(const SuitabilityRecord& record) noexcept : record_(record) {}
  double selfTime() const override { return record_.selfTime; }
  int cores() const override { return record_.cores; }
  std::uint32_t flags() const override { return record_.flags; }
  double siteMaxGain() const override { return record_.siteMaxGain; }
  double totalMaxGain() const override { return record_.totalMaxGain; }

 private:
  SuitabilityRecord record_;
};

class CorrectnessView final : public digestio::CorrectnessDetail {
 public:
  explicit CorrectnessView(const CorrectnessRecord& record) noexcept : record_(record) {}
  int errors() const override { return record_.errors; }
  int warnings(int index) const override { return record_.warnings[static_cast<std::size_t>(index)]; }

 private:
  CorrectnessRecord record_;
};

class MapView final : public digestio::MapDetail {
 public:
  explicit MapView(const MapRecord& record) noexcept : record_(record) {}
  std::int64_t strides(int index) const override { return record_.strides[static_cast<std::size_t>(index)]; }

 private:
  MapRecord record_;
};

/// What a detail is made of. Texts and views lie in the collection's memory.
struct DetailFields {
  toolbelt::path_t file;
  std::int32_t line = 0;
  std::int32_t column = 0;
  std::string_view label;
  digestio::SummaryDetailKind detailKind = digestio::kAnnotatedSite;
  sitenotes::annotation_t::kind_t annotationKind = sitenotes::annotation_t::parallel;
  digestio::SurveyDetail* survey = nullptr;
  digestio::SurveyVectorizationDetail* surveyVectorization = nullptr;
  digestio::SuitabilityDetail* suitability = nullptr;
  digestio::CorrectnessDetail* correctness = nullptr;
  digestio::MapDetail* map = nullptr;
};

[[nodiscard]] inline sitenotes::locator_t placeOf(const DetailFields& fields) noexcept {
  return {fields.file, fields.line, fields.column};
}

class Detail final : public digestio::SummaryDetail {
 public:
  explicit Detail(const DetailFields& fields) noexcept : fields_(fields) {}

  digestio::SummaryDetailKind detailKind() const override { return fields_.detailKind; }
  sitenotes::annotation_t::kind_t annotationKind() const override { return fields_.annotationKind; }
  sitenotes::locator_t locator() const override { return placeOf(fields_); }
  std::string label() const override { return std::string(fields_.label); }
  digestio::SurveyDetail* surveyView() const override { return fields_.survey; }
  digestio::SurveyVectorizationDetail* surveyVectorizationView() const override { return fields_.surveyVectorization; }
  digestio::SuitabilityDetail* suitabilityView() const override { return fields_.suitability; }
  digestio::CorrectnessDetail* correctnessView() const override { return fields_.correctness; }
  digestio::MapDetail* mapView() const override { return fields_.map; }

 private:
  DetailFields fields_;
};
static_assert(sizeof(Detail) <= 96, "a collection holds a million of them");

/// One analysis in memory. Details are asked for in the order of their file, but lie in display order: most
/// walks go in that order, which then is that of memory, here and in what is made of them. What they refer to comes
/// from an arena that goes with the collection, so a detail costs no allocation of its own.
class Collection final : public digestio::SummaryCollection {
 public:
  digestio::SummaryDataKind dataKind() const override { return program_.dataKind; }
  void reserved() const override {}
  int num_processors() const override { return program_.processors; }
  int num_kova_threads() const override { return program_.kovaThreads; }
  int threading_paradigm() const override { return program_.threadingParadigm; }
  int target_system() const override { return program_.targetSystem; }
  double programMaxGain() const override { return program_.programMaxGain; }
  int detailCount() const override { return static_cast<int>(details_.size()); }
  digestio::SummaryDetail* detail(int index) const override { return inOrder_[static_cast<std::size_t>(index)]; }

  [[nodiscard]] ProgramRecord& program() noexcept { return program_; }
  /// Takes all details, whose labels need not outlive the call. To be called once; the caller sees to it that an int
  /// counts them.
  void take(std::span<const DetailFields> inOrder);
  /// A view of `record` that lives as long as this object.
  template <class View, class Record>
  [[nodiscard]] View* keepView(const Record& record) {
    static_assert(std::is_trivially_destructible_v<View>, "the arena destroys nothing");
    return ::new (arena_.allocate(sizeof(View), alignof(View))) View(record);
  }

 private:
  /// A copy of `text` that lives as long as this object.
  [[nodiscard]] std::string_view keep(std::string_view text);

  ProgramRecord program_;
  std::pmr::monotonic_buffer_resource arena_;
  std::vector<Detail> details_;  // never grows once it is filled: details stay where they are
  std::vector<Detail*> inOrder_;
};

}  // namespace kelvar_platform
