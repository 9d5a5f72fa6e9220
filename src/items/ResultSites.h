#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "PerKind.h"
#include "digestio.h"
#include "items/RecordedSites.h"
#include "items/SummaryItems.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// The sites that one result knows, in one order: items of what its analysis reported, and among them the recorded
/// sites, of which it says no more than that it has looked. Those are known by their numbers, and become items only
/// where a fold changes one.
class ResultSites {
 public:
  using Number = RecordedSites::Number;

  ResultSites() noexcept = default;
  /// Without recorded sites.
  explicit ResultSites(SummaryItems&& items) noexcept : items_(std::move(items)) {}

  /// Those that are items. They stand in front of all recorded sites until a fold gives each its place among them.
  [[nodiscard]] SummaryItems& items() noexcept { return items_; }
  /// Takes recorded sites in, which the analyses `known` have looked at. They outlive this object and stay as they are.
  void add(const RecordedSites& recorded, const PerKind<bool>& known);

  /// Folds what stands for one site, so that a result lists each once. `kind` chooses the order in which sites are
  /// looked at, and which is left: vectorization self time or place. Null entries go. When an exception passes, what is
  /// left may only be destroyed.
  void fold(digestio::SummaryDataKind kind);

  /// How many recorded sites there are, items or not.
  [[nodiscard]] Number recordedCount() const noexcept { return recorded_ != nullptr ? recorded_->size() : 0; }
  [[nodiscard]] const RecordedSites& recorded() const noexcept { return *recorded_; }
  /// Whether a recorded site has become an item, or a part of one.
  [[nodiscard]] bool isTaken(Number number) const noexcept { return isTaken_[number]; }
  /// The number of the first recorded site that stands behind an item.
  [[nodiscard]] Number placeOf(std::size_t index) const noexcept { return index < places_.size() ? places_[index] : 0; }
  /// What a recorded site is as an item, to be looked at.
  [[nodiscard]] SummaryItemImpl itemOf(Number number) const {
    return SummaryItemImpl(recorded_->owner(), (*recorded_)[number], known_);
  }
  [[nodiscard]] const PerKind<bool>& known() const noexcept { return known_; }

  /// For folds: what a recorded site is, as an item for the list or for one to merge. It is no recorded site any more.
  [[nodiscard]] SummaryItems::value_type take(Number number);
  void mergeInto(SummaryItemImpl& item, Number number);
  /// An item for the list: it stands before the entry at `index` and before the recorded site `place`.
  struct Entering {
    std::size_t index;
    Number place;
    SummaryItems::value_type item;
  };
  /// Puts items in, ascending by index, and drops null entries.
  void enter(std::vector<Entering> entering);

 private:
  /// Items and recorded sites that share a place, from the first up to the end of each.
  struct Meeting {
    std::size_t firstItem;
    std::size_t endOfItems;
    Number firstSite;
    Number endOfSites;
  };

  void dropNulls();
  void findPlaces(SummaryMapping mapping);
  /// Places the items from `begin` up to `end`, which stand by place. Answers where the order at one place is open.
  std::vector<Meeting> findMeetings(std::size_t begin, std::size_t end);
  /// Orders those that meet at one place. All but an item and its own site become items for that.
  void settle(const std::vector<Meeting>& meetings, SummaryMapping mapping);
  void foldNeighbours();

  SummaryItems items_;
  std::vector<Number> places_;  // by index of the items
  const RecordedSites* recorded_ = nullptr;
  PerKind<bool> known_{};
  std::vector<bool> isTaken_;  // by number
};

}  // namespace kelvar_2_1_7
