#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <vector>

#include "view/LeafOrder.h"
#include "view/MergeSort.h"
#include "view/RadixSort.h"

namespace kelvar_2_1_7 {

/// Whether a record's place is shown before another's.
template <class Record>
[[nodiscard]] bool standsBefore(const Record& a, const Record& b) {
  return a.place.display_order(b.place) < 0;
}

/// What is left without the sorted lists that the records begin and end with.
template <class Record>
[[nodiscard]] std::span<Record> betweenSorted(std::span<Record> records) {
  const auto begin = std::is_sorted_until(records.begin(), records.end(), standsBefore<Record>);
  const auto standsBehind = [](const Record& a, const Record& b) { return standsBefore(b, a); };
  const auto end = std::is_sorted_until(records.rbegin(), std::reverse_iterator(begin), standsBehind);
  return {begin, end.base()};
}

/// Brings records nearly in the order of their places. Uses their keys.
template <class Record>
void arrangeByPlace(std::span<Record> records, std::vector<Record>& buffer) {
  LeafOrder order;
  for (Record& record : records) record.key = order.leafOf(record.place);
  order.rankLeaves();
  for (Record& record : records) record.key = order.numberOf(static_cast<std::uint32_t>(record.key), record.place);
  radixSort(records, buffer);
}

/// Sorts records by `place`. Many that stand in no order are first arranged by leaf and line, which takes no call of
/// the collaborators' order.
template <class Record>
void placeSort(std::span<Record> records, std::vector<Record>& buffer) {
  constexpr std::size_t kMany = 4096;
  if (records.size() >= kMany) {
    if (MergeSort(records, buffer, standsBefore<Record>).sortFewRuns()) return;
    const std::span<Record> mixed = betweenSorted(records);
    if (mixed.size() >= kMany) arrangeByPlace(mixed, buffer);
  }
  mergeSort(records, buffer, standsBefore<Record>);
}

}  // namespace kelvar_2_1_7
