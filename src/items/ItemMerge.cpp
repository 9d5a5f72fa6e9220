#include "SummaryItemImpl.h"

namespace kelvar_2_1_7 {

namespace {

/// The label that stands in for what lies beyond a profiler's depth limit.
constexpr const char* kTooDeep = "__too deep__";

/// Whether both places are known and on one line. Files and columns differ too easily between a run and today.
bool onOneLine(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  return !a.is_null() && !b.is_null() && a.get_line() == b.get_line();
}

}  // namespace

// Records first: they read the items' statuses as these were before the merge. A record that has a detail is never
// replaced. Then what this item lacks is taken from the other, and then all that the other has, if its status is the
// greater one: so an item that holds the current annotation keeps it.
void SummaryItemImpl::merge(SummaryItemImpl* other) {
  const bool isCurrent = status_ == kCurrent || other->status_ == kCurrent;
  for (const digestio::SummaryDataKind kind : kAllKinds) {
    if (collections_.detail(kind) == nullptr && other->collections_.detail(kind) != nullptr) {
      collections_.set(kind, other->collections_[kind]);
    }
    if (isCurrent && collections_.status(kind) == kNoMatchCurrent) {
      const bool isExact = onOneLine(locator_, other->locator_);
      collections_.setStatus(kind, isExact ? kExactMatchCurrent : kApproximateMatchCurrent);
    }
  }

  const bool hasGreaterStatus = other->status_ > status_;
  if (!annotation_ || (hasGreaterStatus && other->annotation_)) {
    annotation_ = other->annotation_;
    handle_ = other->handle_;
  }
  if (locator_.is_null() || (hasGreaterStatus && !other->locator_.is_null())) locator_ = other->locator_;
  if (label_.empty() || (hasGreaterStatus && !other->label_.empty())) label_ = other->label_;
  if (hasGreaterStatus) status_ = other->status_;

  // The label survives every merge, so that what was cut off is never taken for a site.
  if (other->label_ == kTooDeep) label_ = other->label_;
  if (!selected_) selected_ = other->selected_;
}

}  // namespace kelvar_2_1_7
