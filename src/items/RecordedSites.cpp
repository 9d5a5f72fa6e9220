#include "items/RecordedSites.h"

#include <algorithm>
#include <span>

#include "items/CallLine.h"
#include "items/LiveAnnotations.h"
#include "items/PlaceOrder.h"
#include "items/SiteMatch.h"

namespace kelvar_2_1_7 {

namespace {

RecordedSite siteOf(LiveAnnotation live, const sitenotes::locator_t& place) {
  const sitenotes::annotation_t::kind_t kind = live.annotation->get_kind();
  const LabelMarks label(live.annotation->get_label());
  return {std::move(live.annotation), live.handle, place, kind, label};
}

/// Orders sites that share a place: annotated sites alone have one order there, whatever a list is sorted by. (That is
/// so of the kinds that there are; one below 0, which only a faulty collaborator gives, may stand elsewhere in a list.)
void orderAtOnePlace(std::span<RecordedSite> sites) {
  std::stable_sort(sites.begin(), sites.end(), [](const RecordedSite& a, const RecordedSite& b) {
    if (a.kind != b.kind) return a.kind < b.kind;
    const int order = a.annotation->get_label().compare(b.annotation->get_label());
    return order != 0 ? order < 0 : a.handle < b.handle;
  });
}

}  // namespace

void RecordedSites::read() {
  if (isRead_ || !database_) return;
  readByPlace();
  findAlike();
  name();
  isRead_ = true;
}

void RecordedSites::readByPlace() {
  std::vector<LiveAnnotation> annotations = liveAnnotations(database_);
  const auto placeOf = [&](std::size_t index) { return annotations[index].annotation->get_locator(); };
  const std::vector<Placed> inOrder = placeOrder(annotations.size(), placeOf);
  sites_.clear();  // of a time when it failed
  sites_.reserve(inOrder.size());
  constexpr std::size_t kStep = 16;
  std::size_t first = 0;  // of those at the place of the last one
  for (std::size_t i = 0; i < inOrder.size(); ++i) {
    if (i + 2 * kStep < inOrder.size()) callLine(&annotations[inOrder[i + 2 * kStep].index]);
    if (i + kStep < inOrder.size()) callLine(annotations[inOrder[i + kStep].index].annotation.get());
    if (inOrder[i].key != inOrder[first].key) {
      if (i - first > 1) orderAtOnePlace(std::span(sites_).last(i - first));
      first = i;
    }
    sites_.push_back(siteOf(std::move(annotations[inOrder[i].index]), inOrder[i].place));
  }
  orderAtOnePlace(std::span(sites_).subspan(first));
}

void RecordedSites::findAlike() {
  alike_.clear();
  for (Number number = 0; number + 1 < size(); ++number) {
    const RecordedSite& site = sites_[number];
    const RecordedSite& next = sites_[number + 1];
    if (site.kind == next.kind && sameLeaf(site.place, next.place)) alike_.push_back(number);
  }
}

void RecordedSites::name() {
  SiteNames names;
  names.keys.reserve(sites_.size());
  for (Number number = 0; number < size(); ++number) {
    const RecordedSite& site = sites_[number];
    if (site.label.isThere) names.add(site.label.hash, site.kind, number);
  }
  names_ = NameIndex(names);
}

}  // namespace kelvar_2_1_7
