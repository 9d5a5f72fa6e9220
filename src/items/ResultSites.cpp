#include "items/ResultSites.h"

#include <algorithm>

#include "items/LabelTwins.h"

namespace kelvar_2_1_7 {

namespace {

SummaryMapping orderOf(digestio::SummaryDataKind kind) noexcept {
  return kind == digestio::kSurveyVectorization ? kSortSurveyVectorizationSelfTime : kSortLocator;
}

}  // namespace

void ResultSites::add(const RecordedSites& recorded, const PerKind<bool>& known) {
  isTaken_.assign(recorded.size(), false);
  known_ = known;
  recorded_ = &recorded;
}

void ResultSites::fold(digestio::SummaryDataKind kind) {
  items_.sort(orderOf(kind));
  dropNulls();
  findPlaces(orderOf(kind));
  foldNeighbours();
  foldLabelTwins(*this);
}

void ResultSites::dropNulls() {
  const auto end = std::remove(items_.begin(), items_.end(), nullptr);
  items_.truncate(static_cast<std::size_t>(end - items_.begin()));
}

SummaryItems::value_type ResultSites::take(Number number) {
  SummaryItems::value_type item = items_.makeApart(recorded_->owner(), (*recorded_)[number], known_);
  isTaken_[number] = true;
  return item;
}

void ResultSites::mergeInto(SummaryItemImpl& item, Number number) {
  item.merge(itemOf(number));
  isTaken_[number] = true;
}

void ResultSites::enter(std::vector<Entering> entering) {
  std::vector<SummaryItems::value_type> items;
  std::vector<Number> places;
  items.reserve(items_.size() + entering.size());
  places.reserve(items_.size() + entering.size());
  const auto append = [&](SummaryItems::value_type& item, Number place) {
    if (!item) return;
    items.push_back(std::move(item));
    places.push_back(place);
  };
  auto next = entering.begin();
  for (std::size_t index = 0; index <= items_.size(); ++index) {
    for (; next != entering.end() && next->index == index; ++next) append(next->item, next->place);
    if (index < items_.size()) append(items_.begin()[static_cast<std::ptrdiff_t>(index)], placeOf(index));
  }
  items_.replace(std::move(items));
  places_.swap(places);
}

}  // namespace kelvar_2_1_7
