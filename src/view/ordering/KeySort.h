#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "view/ordering/MergeSort.h"

// Numbers as unsigned keys, and the one sort by such keys: a radix sort, byte by byte, that compares no two records.
// Lists that are sorted, or nearly so, are merged instead, which takes one pass.

namespace kelvar_2_1_7 {

/// A key, and the index of what it belongs to.
struct KeyedIndex {
  std::uint64_t key;
  std::uint32_t index;
};

/// The key of a NaN. No ordering puts a NaN before or behind anything; behind all else it cannot separate the others.
inline constexpr std::uint64_t kUnordered = std::numeric_limits<std::uint64_t>::max();

/// Orders like the number; of two zeros and of NaNs, by their bits.
[[nodiscard]] inline std::uint64_t orderedBits(double number) noexcept {
  constexpr std::uint64_t kSign = std::uint64_t{1} << (std::numeric_limits<std::uint64_t>::digits - 1);
  const auto bits = std::bit_cast<std::uint64_t>(number);
  return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

/// Orders like the number; zeros are equal, and so are NaNs.
[[nodiscard]] inline std::uint64_t keyOf(double number) noexcept {
  return std::isnan(number) ? kUnordered : orderedBits(number + 0.0);
}

/// Sorts stably by `key`, in as many passes as there are bytes in which the keys differ.
template <class Record>
void radixSort(std::span<Record> records, std::vector<Record>& buffer) {
  constexpr std::size_t kBytes = sizeof(std::uint64_t);
  constexpr std::size_t kValues = 256;
  const auto byteOf = [](std::uint64_t key, std::size_t byte) { return static_cast<unsigned char>(key >> (8 * byte)); };

  std::uint64_t differences = 0;
  for (const Record& record : records) differences |= record.key ^ records.front().key;
  buffer.resize(records.size());
  std::span<Record> from = records;
  std::span<Record> to = buffer;
  for (std::size_t byte = 0; byte < kBytes; ++byte) {
    if (byteOf(differences, byte) == 0) continue;
    std::array<std::size_t, kValues> places{};
    for (const Record& record : from) ++places[byteOf(record.key, byte)];
    std::size_t place = 0;
    for (std::size_t& count : places) place += std::exchange(count, place);
    for (const Record& record : from) to[places[byteOf(record.key, byte)]++] = record;
    std::swap(from, to);
  }
  if (from.data() != records.data()) std::copy(from.begin(), from.end(), records.begin());
}

/// Sorts stably by `key`. `buffer` only lends its memory.
template <class Record>
void sortByKey(std::span<Record> records, std::vector<Record>& buffer) {
  constexpr std::size_t kMany = 256;
  constexpr std::size_t kFewDescents = 32;
  const auto before = [](const Record& a, const Record& b) { return a.key < b.key; };
  std::size_t descents = 0;
  for (std::size_t i = 1; i < records.size(); ++i) descents += before(records[i], records[i - 1]) ? 1 : 0;
  if (descents == 0) return;
  if (records.size() < kMany || descents < kFewDescents) return mergeSort(records, buffer, before);
  radixSort(records, buffer);
}

}  // namespace kelvar_2_1_7
