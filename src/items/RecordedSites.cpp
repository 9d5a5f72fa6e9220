#include "items/RecordedSites.h"

#include <utility>

#include "items/LiveAnnotations.h"

namespace kelvar_2_1_7 {

RecordedSites::~RecordedSites() {
  for (const SummaryItems::value_type& site : sites_) site->setLent(false);
}

void RecordedSites::lendTo(SummaryItems& items, const PerKind<bool>& known) {
  if (database_ && !made_) makeSites();
  items.reserve(items.size() + sites_.size());
  for (const SummaryItems::value_type& site : sites_) {
    site->setKnown(known);
    items.append(SummaryItems::value_type(site.get()));
  }
}

void RecordedSites::makeSites() {
  sites_.clear();  // of a time when it failed
  forEachLiveAnnotation(database_, [this](boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle) {
    sites_.make(owner_, std::move(annotation), handle, kNoMatchCurrent, false, false, false, false);
  });
  for (const SummaryItems::value_type& site : sites_) site->setLent(true);
  made_ = true;
}

}  // namespace kelvar_2_1_7
