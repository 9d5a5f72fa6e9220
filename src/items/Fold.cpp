#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "items/ResultSites.h"
#include "items/SiteMatch.h"
#include "items/SummaryItems.h"

namespace kelvar_2_1_7 {

namespace {

using Number = ResultSites::Number;
using Entry = SummaryItems::value_type;

/// Whether two neighbours of one result stand for one site.
bool sameSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return sameSortOfSite(a, b) && sameLeaf(a.place(), b.place()) && !seenApart(a, b);
}
/// No analysis has a detail for a recorded site: there is nothing that would tell it apart.
bool sameSite(const SummaryItemImpl& a, const RecordedSite& b) {
  return a.detailKind() == digestio::kAnnotatedSite && a.annotationKind() == b.kind && sameLeaf(a.place(), b.place);
}

/// Folds each site of a result into the one before it for as long as they are one. Of two recorded ones that is known:
/// those that stand behind their like alone are stepped over, however many they are.
class NeighbourFold {
 public:
  NeighbourFold(ResultSites& sites, std::vector<Number>& places)
      : sites_(sites), items_(sites.items()), places_(places) {
    if (sites.recordedCount() != 0) alike_ = sites.recorded().alike();
    folded_.reserve(items_.size());
    foldedPlaces_.reserve(items_.size());
  }

  void fold() {
    for (std::size_t index = 0; index < items_.size(); ++index) {
      callAhead(index);
      passRecorded(places_[index]);
      meet(items_.begin()[static_cast<std::ptrdiff_t>(index)], places_[index]);
    }
    passRecorded(sites_.recordedCount());
    pass();
    items_.replace(std::move(folded_));
    places_.swap(foldedPlaces_);
  }

 private:
  /// The site that those behind it are folded into: an item, or the recorded one before `next_`.
  struct Last {
    Entry item;
    Number place = 0;
    bool isRecorded = false;
  };

  /// What stands before the site `end`.
  void passRecorded(Number end) {
    while (next_ < end) {
      if (sites_.isTaken(next_)) {
        ++next_;
      } else if (last_.item && sameSite(*last_.item, sites_.recorded()[next_])) {
        sites_.mergeInto(*last_.item, next_++);
      } else if (isAlikeLast()) {
        lastAsItem();
        sites_.mergeInto(*last_.item, next_++);
      } else {
        stepTo(end);
      }
    }
  }
  /// Makes a recorded site before `end` the last one: that before the next of its like, or before the next item.
  void stepTo(Number end) {
    pass();
    while (!alike_.empty() && alike_.front() < next_) alike_ = alike_.subspan(1);
    next_ = alike_.empty() || alike_.front() >= end ? end : alike_.front() + 1;
    last_.isRecorded = true;
  }
  [[nodiscard]] bool isAlikeLast() const noexcept {
    return last_.isRecorded && !alike_.empty() && alike_.front() + 1 == next_;
  }

  void meet(Entry& item, Number place) {
    const bool isSame =
        last_.item ? sameSite(*last_.item, *item) : last_.isRecorded && sameSite(*item, sites_.recorded()[next_ - 1]);
    if (isSame) {
      lastAsItem();
      last_.item->merge(*item);
      item.reset();
    } else {
      pass();
      last_ = {.item = std::move(item), .place = place};
    }
  }
  void lastAsItem() {
    if (last_.item) return;
    last_ = {.item = sites_.take(next_ - 1), .place = next_ - 1};
  }
  void pass() {
    if (last_.item) {
      folded_.push_back(std::move(last_.item));
      foldedPlaces_.push_back(last_.place);
    }
    last_ = {};
  }

  /// Items and the sites behind them, which mostly are their own.
  void callAhead(std::size_t index) const noexcept {
    constexpr std::size_t kStep = SummaryItems::kStep;
    items_.callMarksAhead(index);
    if (index + kStep < items_.size() && places_[index + kStep] < sites_.recordedCount()) {
      callLine(&sites_.recorded()[places_[index + kStep]]);
    }
    if (index + kStep / 2 < items_.size() && places_[index + kStep / 2] < sites_.recordedCount()) {
      callLine(sites_.recorded()[places_[index + kStep / 2]].annotation.get());
    }
  }

  ResultSites& sites_;
  SummaryItems& items_;
  std::vector<Number>& places_;
  std::span<const Number> alike_;  // those that may come to be the last one
  Number next_ = 0;                // the recorded site that comes next
  Last last_;
  std::vector<Entry> folded_;
  std::vector<Number> foldedPlaces_;
};

}  // namespace

void ResultSites::foldNeighbours() {
  NeighbourFold(*this, places_).fold();
}

void SummaryItems::exactMerge(digestio::SummaryDataKind kind) {
  ResultSites sites(std::move(*this));
  sites.fold(kind);
  swap(sites.items());
}

}  // namespace kelvar_2_1_7
