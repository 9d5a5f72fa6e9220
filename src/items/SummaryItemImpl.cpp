#include "SummaryItemImpl.h"

#include <array>
#include <utility>

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using digestio::SummaryDetail;

namespace {

/// What a record of a kind takes from a detail that shows the kind.
struct DetailView {
  SummaryDataKind kind;
  bool (*shows)(const SummaryDetail&);
  bool keepsAnnotation;  // the two surveys see loops and functions, whose annotation says nothing of the run
};

template <auto view>
bool shows(const SummaryDetail& detail) {
  return (detail.*view)() != nullptr;
}

constexpr std::array kDetailViews{
    DetailView{digestio::kSurvey, shows<&SummaryDetail::surveyView>, false},
    DetailView{digestio::kSurveyVectorization, shows<&SummaryDetail::surveyVectorizationView>, false},
    DetailView{digestio::kCorrectness, shows<&SummaryDetail::correctnessView>, true},
    DetailView{digestio::kMap, shows<&SummaryDetail::mapView>, true},
    DetailView{digestio::kSuitability, shows<&SummaryDetail::suitabilityView>, true},
};

template <auto view>
auto typed(const SummaryDetail* detail) -> decltype((detail->*view)()) {
  return detail != nullptr ? (detail->*view)() : nullptr;
}

}  // namespace

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner) noexcept
    : owner_(owner),
      detailKind_(digestio::kAnnotatedSite),
      annotationKind_(sitenotes::annotation_t::parallel),
      status_(kNoMatchCurrent),
      locator_(toolbelt::path_t(), 0, 0),
      handle_(0),
      collections_{},
      selected_(false) {}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, boost::shared_ptr<sitenotes::annotation_t> annotation,
                                 unsigned long handle, SummaryDataStatus status, bool survey, bool suitability,
                                 bool correctness, bool map)
    : SummaryItemImpl(owner) {
  annotationKind_ = annotation->get_kind();
  status_ = status;
  locator_ = annotation->get_locator();
  label_ = annotation->get_label();
  annotation_ = std::move(annotation);
  handle_ = handle;

  const PerKind<bool> known{{survey, survey, suitability, correctness, map}};
  for (const SummaryDataKind kind : kAllKinds) {
    if (!known[kind]) continue;
    collections_[kind].status = status;
    collections_[kind].count = 1;
  }
}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, SummaryDetail* detail,
                                 boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle)
    : SummaryItemImpl(owner) {
  if (detail != nullptr) detailKind_ = detail->detailKind();
  if (annotation) {
    annotationKind_ = annotation->get_kind();
    locator_ = annotation->get_locator();
    label_ = annotation->get_label();
    annotation_ = annotation;
    handle_ = handle;
  }
  if (detail == nullptr) return;

  bool shown = false;
  for (const DetailView& view : kDetailViews) {
    if (!view.shows(*detail)) continue;
    shown = true;
    CollectionInfo& record = collections_[view.kind];
    record.status = kNoMatchCurrent;
    record.count = 1;
    record.detail = detail;
    if (view.keepsAnnotation) record.annotation = annotation;
  }
  // A detail that shows nothing gives no identity either.
  if (!shown || annotation) return;
  annotationKind_ = detail->annotationKind();
  locator_ = detail->locator();
  label_ = detail->label();
  handle_ = handle;
}

SummaryItemImpl::~SummaryItemImpl() = default;

digestio::SurveyDetail* SummaryItemImpl::surveyDetail() const {
  return typed<&SummaryDetail::surveyView>(collections_[digestio::kSurvey].detail);
}

digestio::SurveyVectorizationDetail* SummaryItemImpl::surveyVectorizationDetail() const {
  return typed<&SummaryDetail::surveyVectorizationView>(collections_[digestio::kSurveyVectorization].detail);
}

digestio::SuitabilityDetail* SummaryItemImpl::suitabilityDetail() const {
  return typed<&SummaryDetail::suitabilityView>(collections_[digestio::kSuitability].detail);
}

digestio::CorrectnessDetail* SummaryItemImpl::correctnessDetail() const {
  return typed<&SummaryDetail::correctnessView>(collections_[digestio::kCorrectness].detail);
}

digestio::MapDetail* SummaryItemImpl::mapDetail() const {
  return typed<&SummaryDetail::mapView>(collections_[digestio::kMap].detail);
}

}  // namespace kelvar_2_1_7
