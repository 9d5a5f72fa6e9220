#include <utility>

#include "SummaryItemImpl.h"

namespace kelvar_2_1_7 {

namespace {

/// Whether both places are known and on one line. Files and columns differ too easily between a run and today.
bool onOneLine(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  return !a.is_null() && !b.is_null() && a.get_line() == b.get_line();
}

bool isOfOneKind(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return a.detailKind() == b.detailKind() && a.annotationKind() == b.annotationKind();
}

}  // namespace

SummaryItemImpl::SummaryItemImpl(CopyOf copy) : SummaryItemImpl(copy.source) {
  inArena_ = false;
  becomeLikeItsCopy();
}

SummaryItemImpl::SummaryItemImpl(LastOf last) : SummaryItemImpl(std::move(last.source)) {
  inArena_ = false;
  becomeLikeItsCopy();
}

void SummaryItemImpl::becomeLikeItsCopy() {
  if (isLikeItsCopy()) return;
  detailKind_ = digestio::kAnnotatedSite;
  annotationKind_ = annotation_->get_kind();
  locator_ = annotation_->get_locator();
  setLabel(annotation_->get_label());
  saysAsAnnotated_ = true;
}

void SummaryItemImpl::takeBack(SummaryItemImpl& state) noexcept {
  const bool inArena = inArena_;
  *this = std::move(state);
  inArena_ = inArena;
}

std::unique_ptr<SummaryItemImpl> SummaryItemImpl::copySummaryItem(const SummaryItemImpl& source) {
  return std::make_unique<SummaryItemImpl>(CopyOf{source});
}

void SummaryItemImpl::takeBack(const Records& records) noexcept {
  statuses_ = records.statuses;
  counted_ = records.counted;
  seen_ = records.seen;
  for (const digestio::SummaryDataKind kind : kAllKinds) {
    if (seen_.has(kind)) continue;
    details_[kind] = nullptr;
    collectionAnnotations_.drop(kind);
  }
}

void SummaryItemImpl::merge(const SummaryItemImpl& other) {
  // Statuses are read as they were before the merge: the records are settled before the items' identity is.
  const bool current = status_ == kCurrent || other.status_ == kCurrent;
  for (const digestio::SummaryDataKind kind : kAllKinds) {
    if (!seen_.has(kind) && other.seen_.has(kind)) {
      setRecord(kind, other.record(kind));
      collectionAnnotations_.set(kind, other.collectionAnnotations_.of(kind));
    }
    if (statuses_[kind] == kNoMatchCurrent && current) {
      statuses_.set(kind, onOneLine(locator_, other.locator_) ? kExactMatchCurrent : kApproximateMatchCurrent);
    }
  }

  if (!annotation_) takeAnnotation(other);
  if (locator_.is_null()) takePlace(other);
  if (!hasLabel()) takeLabel(other);

  if (other.status_ > status_) {
    if (other.annotation_) takeAnnotation(other);
    if (!other.locator_.is_null()) takePlace(other);
    if (other.hasLabel()) takeLabel(other);
    // Taken over whole, what the other says of its annotation holds of this one.
    const bool isAll = other.saysAsAnnotated_ && !other.locator_.is_null() && other.hasLabel();
    if (isAll && isOfOneKind(*this, other)) saysAsAnnotated_ = true;
    status_ = other.status_;
  }
  // It survives every merge, so that what was cut off is never taken for a site.
  if (other.labelMarks_.isTooDeep) takeLabel(other);
  if (!selected_) selected_ = other.selected_;
}

bool SummaryItemImpl::gainsRecordsFrom(const SummaryItemImpl& other) const {
  const bool current = status_ == kCurrent || other.status_ == kCurrent;
  return !other.seen_.isWithin(seen_) || (current && statuses_.has(kNoMatchCurrent));
}

bool SummaryItemImpl::gainsMoreFrom(const SummaryItemImpl& other) const {
  return (!annotation_ && (other.annotation_ || other.handle_ != handle_)) || locator_.is_null() || !hasLabel() ||
         other.status_ > status_ || other.labelMarks_.isTooDeep || (!selected_ && other.selected_);
}

bool SummaryItemImpl::gainsNothingFrom(const RecordedSite& site) const {
  const bool hasAll =
      annotation_ && (!locator_.is_null() || site.place.is_null()) && (hasLabel() || !site.label.isThere);
  const bool isMatched = status_ != kCurrent || !statuses_.has(kNoMatchCurrent);
  return hasAll && isMatched && status_ >= kNoMatchCurrent && !site.label.isTooDeep && isLikeItsCopy();
}

void SummaryItemImpl::takeAnnotation(const SummaryItemImpl& other) {
  annotation_ = other.annotation_;
  handle_ = other.handle_;
  saysAsAnnotated_ = false;
}

void SummaryItemImpl::takePlace(const SummaryItemImpl& other) {
  locator_ = other.locator_;
  saysAsAnnotated_ = false;
}

void SummaryItemImpl::takeLabel(const SummaryItemImpl& other) {
  setLabel(other.label_);
  saysAsAnnotated_ = false;
}

}  // namespace kelvar_2_1_7
