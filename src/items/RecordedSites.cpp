#include "items/RecordedSites.h"

#include <boost/unordered/unordered_flat_map.hpp>
#include <span>

#include "items/LiveAnnotations.h"
#include "items/PlaceOrder.h"
#include "items/SiteMatch.h"
#include "items/SummaryItems.h"

namespace kelvar_2_1_7 {

namespace {

RecordedSite siteOf(LiveAnnotation live, const sitenotes::locator_t& place) {
  const sitenotes::annotation_t::kind_t kind = live.annotation->get_kind();
  const LabelMarks label(live.annotation->get_label());
  return {std::move(live.annotation), live.handle, place, kind, label};
}

/// The numbers of the sites in a list of items, as the items stand.
std::vector<RecordedSites::Number> numbersOf(
    const SummaryItems& items,
    const boost::unordered_flat_map<const SummaryItemImpl*, RecordedSites::Number>& numbers) {
  std::vector<RecordedSites::Number> inOrder;
  inOrder.reserve(items.size());
  for (const SummaryItems::value_type& item : items) inOrder.push_back(numbers.at(item.get()));
  return inOrder;
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
  std::vector<Crowd> crowds;
  constexpr std::size_t kStep = 16;
  for (std::size_t i = 0; i < inOrder.size(); ++i) {
    if (i + 2 * kStep < inOrder.size()) callLine(&annotations[inOrder[i + 2 * kStep].index]);
    if (i + kStep < inOrder.size()) callLine(annotations[inOrder[i + kStep].index].annotation.get());
    sites_.push_back(siteOf(std::move(annotations[inOrder[i].index]), inOrder[i].place));
    if (i == 0 || inOrder[i].key != inOrder[i - 1].key) continue;
    const Number number = static_cast<Number>(i);
    if (crowds.empty() || crowds.back().end != number) crowds.push_back({number - 1, number});
    crowds.back().end = number + 1;
  }
  orderCrowds(crowds);
}

void RecordedSites::orderCrowds(const std::vector<Crowd>& crowds) {
  unsettled_.clear();
  if (crowds.empty()) return;
  SummaryItems items;
  boost::unordered_flat_map<const SummaryItemImpl*, Number> numbers;
  for (const Crowd& crowd : crowds) {
    for (Number number = crowd.begin; number < crowd.end; ++number) {
      numbers.emplace(&items.make(owner_, sites_[number], PerKind<bool>()), number);
    }
  }
  items.sort(kSortLocator);
  const std::vector<Number> byLocator = numbersOf(items, numbers);
  items.sort(kSortSurveyVectorizationSelfTime);
  const std::vector<Number> byName = numbersOf(items, numbers);

  std::vector<RecordedSite> inOrder;
  inOrder.reserve(byLocator.size());
  for (const Number number : byLocator) inOrder.push_back(sites_[number]);
  std::size_t next = 0;
  for (const Crowd& crowd : crowds) {
    bool isSettled = true;
    for (Number number = crowd.begin; number < crowd.end; ++number, ++next) {
      sites_[number] = std::move(inOrder[next]);
      isSettled = isSettled && byLocator[next] == byName[next];
    }
    if (!isSettled) unsettled_.push_back(crowd);
  }
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
  names_ = {};
  names_.keys.reserve(sites_.size());
  for (Number number = 0; number < size(); ++number) {
    const RecordedSite& site = sites_[number];
    if (site.label.isThere) names_.add(site.label.hash, site.kind, number);
  }
}

}  // namespace kelvar_2_1_7
