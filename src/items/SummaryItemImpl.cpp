#include "SummaryItemImpl.h"

#include <array>
#include <memory>
#include <utility>

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using digestio::SummaryDetail;

namespace {

template <auto view>
bool offers(const SummaryDetail& detail) {
  return (detail.*view)() != nullptr;
}

/// Whether a detail has a record of the kind.
constexpr PerKind<bool (*)(const SummaryDetail&)> kOffers{
    {offers<&SummaryDetail::surveyView>, offers<&SummaryDetail::surveyVectorizationView>,
     offers<&SummaryDetail::suitabilityView>, offers<&SummaryDetail::correctnessView>,
     offers<&SummaryDetail::mapView>}};

/// The order in which a new item asks a detail for its records.
constexpr std::array kReadingOrder{kSurveyKind, kVectorizationKind, kCorrectnessKind, kMapKind, kSuitabilityKind};

/// The two surveys see functions and loops, whose annotation says nothing of the run.
constexpr PerKind<bool> kKeepsAnnotation{{false, false, true, true, true}};

template <auto view>
auto typed(const SummaryItemImpl& item, SummaryDataKind kind) {
  const SummaryDetail* const detail = item.summaryDetail(kind);
  return detail != nullptr ? (detail->*view)() : nullptr;
}

}  // namespace

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner)
    : owner_(owner),
      detailKind_(kSiteDetail),
      annotationKind_(kParallelAnnotation),
      status_(kNoMatchCurrent),
      locator_(toolbelt::path_t(), 0, 0) {}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, boost::shared_ptr<sitenotes::annotation_t> annotation,
                                 unsigned long handle, SummaryDataStatus status, bool survey, bool suitability,
                                 bool correctness, bool map)
    : owner_(owner),
      detailKind_(kSiteDetail),
      annotationKind_(annotation->get_kind()),
      status_(status),
      locator_(annotation->get_locator()),
      label_(annotation->get_label()),
      annotation_(std::move(annotation)),
      handle_(handle) {
  const PerKind<bool> isKnown{{survey, survey, suitability, correctness, map}};
  for (const SummaryDataKind kind : kAllKinds) {
    if (isKnown[kind]) collections_.setKnown(kind, status);
  }
}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, SummaryDetail* detail,
                                 boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle)
    : SummaryItemImpl(owner) {
  if (detail != nullptr) detailKind_ = detail->detailKind();
  if (annotation) {
    takeIdentity(annotation);
    handle_ = handle;
  }
  if (detail == nullptr) return;

  bool offersAny = false;
  for (const SummaryDataKind kind : kReadingOrder) {
    if (!kOffers[kind](*detail)) continue;
    offersAny = true;
    collections_.set(kind, {.status = kNoMatchCurrent,
                            .count = 1,
                            .detail = detail,
                            .annotation = kKeepsAnnotation[kind] ? annotation : nullptr});
  }
  // A detail that shows nothing gives no identity either.
  if (!offersAny || annotation) return;
  annotationKind_ = detail->annotationKind();
  locator_ = detail->locator();
  label_ = detail->label();
  handle_ = handle;
}

SummaryItemImpl::~SummaryItemImpl() = default;

void SummaryItemImpl::takeIdentity(const boost::shared_ptr<sitenotes::annotation_t>& annotation) {
  annotationKind_ = annotation->get_kind();
  locator_ = annotation->get_locator();
  label_ = annotation->get_label();
  annotation_ = annotation;
}

SummaryItemImpl::SummaryItemImpl(const SummaryItemImpl& source, ReadAfresh)
    : owner_(source.owner_),
      detailKind_(kSiteDetail),
      annotationKind_(source.annotation_->get_kind()),
      status_(source.status_),
      locator_(source.annotation_->get_locator()),
      label_(source.annotation_->get_label()),
      annotation_(source.annotation_),
      handle_(source.handle_),
      collections_(source.collections_),
      selected_(source.selected_) {}

SummaryItemImpl* SummaryItemImpl::copySummaryItem(SummaryItemImpl* source) {
  return source->hasAnnotation() ? new SummaryItemImpl(*source, ReadAfresh()) : new SummaryItemImpl(*source);
}

bool SummaryItemImpl::shows(SummaryDataKind kind) const {
  const SummaryDetail* const detail = summaryDetail(kind);
  return detail != nullptr && kOffers[kind](*detail);
}

digestio::SurveyDetail* SummaryItemImpl::surveyDetail() const {
  return typed<&SummaryDetail::surveyView>(*this, kSurveyKind);
}

digestio::SurveyVectorizationDetail* SummaryItemImpl::surveyVectorizationDetail() const {
  return typed<&SummaryDetail::surveyVectorizationView>(*this, kVectorizationKind);
}

digestio::SuitabilityDetail* SummaryItemImpl::suitabilityDetail() const {
  return typed<&SummaryDetail::suitabilityView>(*this, kSuitabilityKind);
}

digestio::CorrectnessDetail* SummaryItemImpl::correctnessDetail() const {
  return typed<&SummaryDetail::correctnessView>(*this, kCorrectnessKind);
}

digestio::MapDetail* SummaryItemImpl::mapDetail() const {
  return typed<&SummaryDetail::mapView>(*this, kMapKind);
}

}  // namespace kelvar_2_1_7
