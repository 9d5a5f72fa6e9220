#include <algorithm>
#include <cstddef>
#include <utility>

#include "items/Gallop.h"
#include "items/ResultSites.h"

namespace kelvar_2_1_7 {

namespace {

using Number = ResultSites::Number;
constexpr std::size_t kStep = 16;

/// Finds where places, one behind the other in their order, stand among recorded sites.
class SiteSearch {
 public:
  explicit SiteSearch(const RecordedSites& sites) : sites_(sites) {}

  /// The first site, from the last one found on, that does not stand before the place: few stand in between.
  Number find(const sitenotes::locator_t& place) {
    const auto isBefore = [&](std::size_t number) {
      return sites_[static_cast<Number>(number)].place.display_order(place) < 0;
    };
    found_ = static_cast<Number>(gallop(found_, sites_.size(), isBefore));
    return found_;
  }
  /// The end of the sites from the one found on that stand at the place. They are not found again.
  Number passThoseAt(const sitenotes::locator_t& place) {
    while (found_ < sites_.size() && sites_[found_].place.display_order(place) == 0) ++found_;
    return found_;
  }

 private:
  const RecordedSites& sites_;
  Number found_ = 0;
};

/// Whether a site is an item's own annotation, as a rule: then both orders of places put it behind the item.
bool isOwnSite(const SummaryItemImpl& item, const RecordedSite& site) {
  return item.detailKind() == digestio::kAnnotatedSite && item.annotationKind() == site.kind &&
         item.handle() < site.handle && item.labelHash() == site.label.hash &&
         item.labelText() == site.annotation->get_label();
}

}  // namespace

void ResultSites::findPlaces(SummaryMapping mapping) {
  places_.assign(items_.size(), 0);
  if (recordedCount() == 0) return;
  const auto [begin, end] = items_.unmeasured(mapping);
  std::fill(places_.begin() + static_cast<std::ptrdiff_t>(end), places_.end(), recordedCount());
  settle(findMeetings(begin, end), mapping);
}

std::vector<ResultSites::Meeting> ResultSites::findMeetings(std::size_t begin, std::size_t end) {
  std::vector<Meeting> meetings;
  SiteSearch search(*recorded_);
  for (std::size_t index = begin; index < end;) {
    const std::size_t first = index;
    const sitenotes::locator_t& place = items_[first]->place();
    const Number number = search.find(place);
    const Number endOfSites = search.passThoseAt(place);
    do {
      items_.callMarksAhead(index);
      places_[index++] = number;
    } while (endOfSites != number && index < end && items_[index]->place().display_order(place) == 0);
    if (endOfSites != number) meetings.push_back({first, index, number, endOfSites});
  }
  return meetings;
}

void ResultSites::settle(const std::vector<Meeting>& meetings, SummaryMapping mapping) {
  SummaryItems crowded;
  std::vector<Entering> entering;
  const auto callAhead = [&](std::size_t next) {
    if (next + 2 * kStep < meetings.size()) callLine(&(*recorded_)[meetings[next + 2 * kStep].firstSite]);
    if (next + kStep >= meetings.size()) return;
    const Meeting& meeting = meetings[next + kStep];
    callLine((*recorded_)[meeting.firstSite].annotation.get());
    SummaryItems::callMarks(items_[meeting.firstItem]);
  };
  for (std::size_t next = 0; next < meetings.size(); ++next) {
    callAhead(next);
    const Meeting& meeting = meetings[next];
    const bool areTwo = meeting.endOfItems - meeting.firstItem == 1 && meeting.endOfSites - meeting.firstSite == 1;
    if (areTwo && isOwnSite(*items_[meeting.firstItem], (*recorded_)[meeting.firstSite])) continue;
    for (std::size_t index = meeting.firstItem; index < meeting.endOfItems; ++index) {
      crowded.append(std::move(items_.begin()[static_cast<std::ptrdiff_t>(index)]));
    }
    for (Number number = meeting.firstSite; number < meeting.endOfSites; ++number) crowded.append(take(number));
    while (entering.size() < crowded.size()) entering.push_back({meeting.firstItem, meeting.firstSite, nullptr});
  }
  if (crowded.empty()) return;
  crowded.sort(mapping);
  std::transform(crowded.begin(), crowded.end(), entering.begin(), entering.begin(), [](auto& item, Entering& at) {
    return Entering{at.index, at.place, std::move(item)};
  });
  enter(std::move(entering));
}

}  // namespace kelvar_2_1_7
