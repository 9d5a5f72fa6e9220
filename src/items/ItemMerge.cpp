#include <string_view>
#include <utility>

#include "SummaryItemImpl.h"

namespace kelvar_2_1_7 {

namespace {

/// The label of the item that stands for all that an analysis did not resolve any deeper. It survives every merge,
/// so that what was cut off is never taken for a site.
constexpr std::string_view kTooDeep = "__too deep__";

/// Whether both places are known and on one line. Files and columns differ too easily between a run and today.
bool onOneLine(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  return !a.is_null() && !b.is_null() && a.get_line() == b.get_line();
}

}  // namespace

SummaryItemImpl::SummaryItemImpl(CopyOf copy) : SummaryItemImpl(copy.source) {
  inArena_ = false;
  lent_ = false;
  becomeLikeItsCopy();
}

void SummaryItemImpl::becomeLikeItsCopy() {
  if (isLikeItsCopy()) return;
  detailKind_ = digestio::kAnnotatedSite;
  annotationKind_ = annotation_->get_kind();
  locator_ = annotation_->get_locator();
  label_ = annotation_->get_label();
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

void SummaryItemImpl::merge(const SummaryItemImpl& other) {
  // Statuses are read as they were before the merge: the records are settled before the items' identity is.
  const bool current = status_ == kCurrent || other.status_ == kCurrent;
  for (const digestio::SummaryDataKind kind : kAllKinds) {
    CollectionInfo& record = collections_[kind];
    const CollectionInfo& theirs = other.collections_[kind];
    if (record.detail == nullptr && theirs.detail != nullptr) {
      record = theirs;
      collectionAnnotations_.set(kind, other.collectionAnnotations_.of(kind));
    }
    if (record.status == kNoMatchCurrent && current) {
      record.status = onOneLine(locator_, other.locator_) ? kExactMatchCurrent : kApproximateMatchCurrent;
    }
  }

  if (!annotation_) takeAnnotation(other);
  if (locator_.is_null()) takePlace(other);
  if (label_.empty()) takeLabel(other.label_);

  if (other.status_ > status_) {
    if (other.annotation_) takeAnnotation(other);
    if (!other.locator_.is_null()) takePlace(other);
    if (!other.label_.empty()) takeLabel(other.label_);
    status_ = other.status_;
  }
  if (other.label_ == kTooDeep) takeLabel(kTooDeep);
  if (!selected_) selected_ = other.selected_;
}

bool SummaryItemImpl::gainsFrom(const SummaryItemImpl& other) const {
  const bool current = status_ == kCurrent || other.status_ == kCurrent;
  for (const digestio::SummaryDataKind kind : kAllKinds) {
    const CollectionInfo& record = collections_[kind];
    if (record.detail == nullptr && other.collections_[kind].detail != nullptr) return true;
    if (record.status == kNoMatchCurrent && current) return true;
  }
  return (!annotation_ && (other.annotation_ || other.handle_ != handle_)) || locator_.is_null() || label_.empty() ||
         other.status_ > status_ || other.label_ == kTooDeep || (!selected_ && other.selected_);
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

void SummaryItemImpl::takeLabel(std::string_view label) {
  label_ = label;
  saysAsAnnotated_ = false;
}

}  // namespace kelvar_2_1_7
