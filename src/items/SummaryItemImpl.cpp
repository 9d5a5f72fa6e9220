#include "SummaryItemImpl.h"

#include <array>
#include <string>
#include <utility>

#include "items/ItemArena.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using digestio::SummaryDetail;

namespace {

template <auto view>
bool shows(const SummaryDetail& detail) {
  return (detail.*view)() != nullptr;
}

/// Whether a detail has a record of the kind.
constexpr PerKind<bool (*)(const SummaryDetail&)> kShows{
    {shows<&SummaryDetail::surveyView>, shows<&SummaryDetail::surveyVectorizationView>,
     shows<&SummaryDetail::suitabilityView>, shows<&SummaryDetail::correctnessView>, shows<&SummaryDetail::mapView>}};

/// The order in which a new item asks a detail for its records.
constexpr std::array kReadingOrder{digestio::kSurvey, digestio::kSurveyVectorization, digestio::kCorrectness,
                                   digestio::kMap, digestio::kSuitability};

/// The two surveys see functions and loops, whose annotation says nothing of the run.
constexpr PerKind<bool> kKeepsAnnotation{{false, false, true, true, true}};

/// Most items have no detail of most kinds, and say so in their first bytes.
template <auto view>
auto typed(const SummaryItemImpl& item, SummaryDataKind kind) {
  return item.hasDetail(kind) ? (item.summaryDetail(kind)->*view)() : nullptr;
}

}  // namespace

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner)
    : handle_(0),
      locator_(toolbelt::path_t(), 0, 0),
      detailKind_(digestio::kAnnotatedSite),
      annotationKind_(sitenotes::annotation_t::parallel),
      status_(kNoMatchCurrent),
      selected_(false),
      inArena_(false),
      saysAsAnnotated_(false),
      shown_(true),
      inJoin_(InJoin::kLeft),
      details_{},
      owner_(owner) {}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, boost::shared_ptr<sitenotes::annotation_t> annotation,
                                 unsigned long handle, SummaryDataStatus status, bool survey, bool suitability,
                                 bool correctness, bool map)
    : SummaryItemImpl(owner) {
  annotationKind_ = annotation->get_kind();
  status_ = status;
  locator_ = annotation->get_locator();
  setLabel(annotation->get_label());
  annotation_ = std::move(annotation);
  handle_ = handle;
  saysAsAnnotated_ = true;

  setKnown({{survey, survey, suitability, correctness, map}});
}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, const RecordedSite& site, const PerKind<bool>& known)
    // What an annotated site knows of vectorization follows from the survey.
    : SummaryItemImpl(owner, site.annotation, site.handle, kNoMatchCurrent, known[digestio::kSurvey],
                      known[digestio::kSuitability], known[digestio::kCorrectness], known[digestio::kMap]) {}

SummaryItemImpl::SummaryItemImpl(SummaryData::Impl* owner, SummaryDetail* detail,
                                 boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle)
    : SummaryItemImpl(owner) {
  if (detail != nullptr) detailKind_ = detail->detailKind();
  if (annotation) {
    annotationKind_ = annotation->get_kind();
    locator_ = annotation->get_locator();
    setLabel(annotation->get_label());
    annotation_ = annotation;
    handle_ = handle;
  }
  if (detail == nullptr) return;

  bool shown = false;
  for (const SummaryDataKind kind : kReadingOrder) {
    if (!kShows[kind](*detail)) continue;
    shown = true;
    setRecord(kind, {.status = kNoMatchCurrent, .count = 1, .detail = detail});
    if (kKeepsAnnotation[kind]) collectionAnnotations_.set(kind, annotation);
  }
  // A detail that shows nothing gives no identity either.
  if (!shown || annotation) return;
  annotationKind_ = detail->annotationKind();
  locator_ = detail->locator();
  setLabel(detail->label());
  handle_ = handle;
}

SummaryItemImpl::~SummaryItemImpl() = default;

void SummaryItemImpl::setKnown(const PerKind<bool>& known) noexcept {
  for (const SummaryDataKind kind : kAllKinds) {
    if (known[kind]) setRecord(kind, {.status = status_, .count = 1, .detail = nullptr});
  }
}

void SummaryItemImpl::setLabel(std::string label) noexcept {
  label_ = std::move(label);
  labelMarks_ = LabelMarks(label_);
}

void SummaryItemImpl::setRecord(SummaryDataKind kind, const CollectionInfo& record) noexcept {
  statuses_.set(kind, record.status);
  if (record.count != 0) counted_.add(kind);
  if (record.detail != nullptr) seen_.add(kind);
  details_[kind] = record.detail;
}

void SummaryItemImpl::operator delete(SummaryItemImpl* item, std::destroying_delete_t) noexcept {
  const bool inArena = item->inArena_;
  item->~SummaryItemImpl();
  inArena ? ItemArena::giveBack(item) : ::operator delete(item);
}

bool SummaryItemImpl::shows(SummaryDataKind kind) const {
  return hasDetail(kind) && kShows[kind](*details_[kind]);
}

digestio::SurveyDetail* SummaryItemImpl::surveyDetail() const {
  return typed<&SummaryDetail::surveyView>(*this, digestio::kSurvey);
}

digestio::SurveyVectorizationDetail* SummaryItemImpl::surveyVectorizationDetail() const {
  return typed<&SummaryDetail::surveyVectorizationView>(*this, digestio::kSurveyVectorization);
}

digestio::SuitabilityDetail* SummaryItemImpl::suitabilityDetail() const {
  return typed<&SummaryDetail::suitabilityView>(*this, digestio::kSuitability);
}

digestio::CorrectnessDetail* SummaryItemImpl::correctnessDetail() const {
  return typed<&SummaryDetail::correctnessView>(*this, digestio::kCorrectness);
}

digestio::MapDetail* SummaryItemImpl::mapDetail() const {
  return typed<&SummaryDetail::mapView>(*this, digestio::kMap);
}

}  // namespace kelvar_2_1_7
