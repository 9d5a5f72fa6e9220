#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <vector>

#include "view/MergeSort.h"
#include "view/RadixSort.h"

namespace kelvar_2_1_7 {

inline constexpr auto kByKey = [](const auto& a, const auto& b) noexcept { return a.key < b.key; };

/// What is left without the sorted lists that the records begin and end with.
template <class Record>
[[nodiscard]] std::span<Record> betweenSorted(std::span<Record> records) noexcept {
  const auto begin = std::is_sorted_until(records.begin(), records.end(), kByKey);
  const auto hasGreaterKey = [](const Record& a, const Record& b) { return kByKey(b, a); };
  const auto end = std::is_sorted_until(records.rbegin(), std::reverse_iterator(begin), hasGreaterKey);
  return {begin, end.base()};
}

/// What the keys of records are like.
struct KeyProfile {
  std::size_t falls = 0;  // how many have a lesser key than the one before
  std::uint64_t greatest = 0;
  std::size_t ofGreatest = 0;  // how many have that

  template <class Record>
  explicit KeyProfile(std::span<Record> records) noexcept {
    std::uint64_t before = 0;
    for (const Record& record : records) {
      const std::uint64_t key = record.key;
      falls += key < before ? 1 : 0;
      ofGreatest = key > greatest ? 1 : ofGreatest + (key == greatest ? 1 : 0);
      greatest = std::max(greatest, key);
      before = key;
    }
  }
};

/// Moves the records of a key behind all others. Answers the others. Both stay in their order.
template <class Record>
std::span<Record> putLast(std::uint64_t key, std::span<Record> records, std::vector<Record>& buffer) {
  buffer.clear();
  auto to = records.begin();
  for (const Record& record : records) {
    if (record.key == key) {
      buffer.push_back(record);
    } else {
      *to++ = record;
    }
  }
  std::copy(buffer.begin(), buffer.end(), to);
  return {records.begin(), to};
}

/// Sorts stably by an unsigned `key` of each record, however many there are and in whatever order they stand: few are
/// merged, and so are those that hardly ever fall. The others are distributed without comparing any two: at once where
/// the keys take few values, as kinds and counts do, else byte by byte, save what stands right already. Of a number
/// that an analysis measures, most items have none: then all those have the greatest key.
template <class Record>
void sortByKey(std::span<Record> records, std::vector<Record>& buffer) {
  constexpr std::size_t kMany = 256;
  constexpr std::size_t kFewFalls = 32;
  if (records.size() < kMany) return mergeSort(records, buffer, kByKey);
  const KeyProfile profile(records);
  if (profile.falls < kFewFalls) return mergeSort(records, buffer, kByKey);
  if (sortByFewKeys(records, buffer)) return;
  if (profile.ofGreatest > records.size() / 2) records = putLast(profile.greatest, records, buffer);
  const std::span<Record> mixed = betweenSorted(records);
  radixSort(mixed, buffer);
  if (mixed.size() != records.size()) mergeSort(records, buffer, kByKey);
}

}  // namespace kelvar_2_1_7
