#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "items/SummaryItems.h"
#include "view/PlaceSort.h"
#include "view/SortEntries.h"
#include "view/TieBreak.h"

namespace kelvar_2_1_7 {

/// Sorts records of items by `place`, and those of one place as TieBreak says: records there may get each other's
/// items, by `setItem`. Numbers the places in `key`.
template <class Record>
class SiteSort {
 public:
  /// `buffer` only lends its memory.
  explicit SiteSort(std::vector<Record>& buffer) : placeSort_(buffer) {}

  /// `byLocator`: where TieBreak would leave it at that, as the ordering by locator says.
  void sort(std::span<Record> records, bool byLocator) {
    placeSort_.sort(records);
    shared_.clear();
    forEachGroup(records, [this](std::span<Record> atOnePlace) { shared_.push_back(atOnePlace); });
    for (std::size_t i = 0; i < shared_.size(); ++i) {
      if (i + kSortStep < shared_.size()) call(shared_[i + kSortStep]);
      breakTies(shared_[i], byLocator);
    }
  }

 private:
  static void call(std::span<const Record> records) noexcept {
    for (const Record& record : records) SummaryItems::call(record.item);
  }

  void breakTies(std::span<Record> records, bool byLocator) {
    tied_.clear();
    for (const Record& record : records) tied_.push_back({0, record.item});
    tieBreak_.sort(tied_, byLocator);
    for (std::size_t i = 0; i < records.size(); ++i) records[i].setItem(tied_[i].item);
  }

  TieBreak tieBreak_;
  std::vector<Entry> tied_;
  PlaceSort<Record> placeSort_;
  std::vector<std::span<Record>> shared_;  // records of one place
};

}  // namespace kelvar_2_1_7
