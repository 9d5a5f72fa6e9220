#pragma once

#include <cstdint>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
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

/// The view of one analysis, or nothing.
using AnalysisView =
    std::variant<std::monostate, SurveyView, SurveyVectorizationView, SuitabilityView, CorrectnessView, MapView>;
static_assert(std::is_trivially_destructible_v<AnalysisView>, "the arena destroys nothing");

/// The views of one detail. There is rarely more than one.
struct AnalysisViews {
  AnalysisView view;
  AnalysisViews* others = nullptr;  ///< in the collection's memory

  /// Null if there is none of this kind.
  template <class View>
  [[nodiscard]] View* find() noexcept {
    for (AnalysisViews* at = this; at != nullptr; at = at->others) {
      if (View* const found = std::get_if<View>(&at->view)) return found;
    }
    return nullptr;
  }
};

/// A detail while it is read.
struct DetailFields {
  toolbelt::path_t file;
  std::int32_t line = 0;
  std::int32_t column = 0;
  std::string_view label;
  digestio::SummaryDetailKind detailKind = digestio::kAnnotatedSite;
  sitenotes::annotation_t::kind_t annotationKind = sitenotes::annotation_t::parallel;
  AnalysisViews views;
};

[[nodiscard]] inline sitenotes::locator_t placeOf(const DetailFields& fields) noexcept {
  return {fields.file, fields.line, fields.column};
}

class Detail final : public digestio::SummaryDetail {
 public:
  /// `label` is a copy of the fields' label that outlives the detail.
  Detail(const DetailFields& fields, std::string_view label) noexcept
      : file_(fields.file),
        line_(fields.line),
        column_(fields.column),
        label_(label.data()),
        labelSize_(static_cast<std::uint32_t>(label.size())),
        detailKind_(static_cast<std::uint8_t>(fields.detailKind)),
        annotationKind_(static_cast<std::uint8_t>(fields.annotationKind)),
        views_(fields.views) {}

  digestio::SummaryDetailKind detailKind() const override {
    return static_cast<digestio::SummaryDetailKind>(detailKind_);
  }
  sitenotes::annotation_t::kind_t annotationKind() const override {
    return static_cast<sitenotes::annotation_t::kind_t>(annotationKind_);
  }
  sitenotes::locator_t locator() const override { return {file_, line_, column_}; }
  std::string label() const override { return std::string(std::string_view(label_, labelSize_)); }
  digestio::SurveyDetail* surveyView() const override { return views_.find<SurveyView>(); }
  digestio::SurveyVectorizationDetail* surveyVectorizationView() const override {
    return views_.find<SurveyVectorizationView>();
  }
  digestio::SuitabilityDetail* suitabilityView() const override { return views_.find<SuitabilityView>(); }
  digestio::CorrectnessDetail* correctnessView() const override { return views_.find<CorrectnessView>(); }
  digestio::MapDetail* mapView() const override { return views_.find<MapView>(); }

 private:
  toolbelt::path_t file_;
  std::int32_t line_;
  std::int32_t column_;
  const char* label_;
  std::uint32_t labelSize_;  // no file is larger
  std::uint8_t detailKind_;
  std::uint8_t annotationKind_;
  mutable AnalysisViews views_;  // never change, but the interface returns them from a const detail as mutable
};
static_assert(sizeof(Detail) <= 96, "a collection holds a million of them");

/// One analysis in memory. detail(index) follows the order of the file, but memory is in display order: most walks go
/// in that order, over the details and over what is built from them. Labels are in an arena of the collection, so that
/// a detail costs no allocation.
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
  /// Takes all details; their labels are copied. Called once. Requires that an int can count them.
  void take(std::span<const DetailFields> inOrder);
  /// Adds one more view to `views`, those of one detail. Uses memory that lives as long as this object.
  void add(const AnalysisView& view, AnalysisViews& views);

 private:
  /// A copy of `text` that lives as long as this object.
  [[nodiscard]] std::string_view copied(std::string_view text);

  ProgramRecord program_;
  std::pmr::monotonic_buffer_resource arena_;
  std::vector<Detail> details_;  // never reallocated after it is filled
  std::vector<Detail*> inOrder_;
};

}  // namespace kelvar_platform
