#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "view/LeafOrder.h"
#include "view/MergeSort.h"
#include "view/SortEntries.h"

namespace kelvar_2_1_7 {

/// Whether a record's place is shown before another's.
template <class Record>
[[nodiscard]] bool standsBefore(const Record& a, const Record& b) {
  return a.place.display_order(b.place) < 0;
}

/// Numbers the places of records in their keys, if they stand in order. Answers whether they do.
template <class Record>
bool numberPlaces(std::span<Record> records) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const int order = i == 0 ? 0 : records[i - 1].place.display_order(records[i].place);
    if (order > 0) return false;
    if (order < 0) ++number;
    records[i].key = number;
  }
  return true;
}

/// Sorts records by `place`, stably, and numbers the places in `key`: it is the same for records of one place. Many
/// that stand in no order are first arranged by leaf and line, which hardly takes a call of the collaborators' order;
/// that one has the last word.
template <class Record>
class PlaceSort {
 public:
  /// `buffer` only lends its memory.
  explicit PlaceSort(std::vector<Record>& buffer) : buffer_(buffer) {}

  void sort(std::span<Record> records) {
    constexpr std::size_t kMany = 4096;
    if (records.size() >= kMany && !MergeSort(records, buffer_, standsBefore<Record>).sortFewRuns()) arrange(records);
    if (numberPlaces(records)) return;
    mergeSort(records, buffer_, standsBefore<Record>);
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
      if (i != 0 && standsBefore(records[i - 1], records[i])) ++number;
      records[i].key = number;
    }
  }

 private:
  /// By leaf and line, and those of one leaf and line by place.
  void arrange(std::span<Record> records) {
    order_.clear();
    order_.reserve(records.size());
    for (const Record& record : records) order_.add(record.place);
    takeOrder(order_.sorted(), records, buffer_);
    forEachGroup(records, [this](std::span<Record> group) { mergeSort(group, buffer_, standsBefore<Record>); });
  }

  std::vector<Record>& buffer_;
  LeafOrder order_;
};

}  // namespace kelvar_2_1_7
