#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace kelvar_2_1_7 {

/// Sorts stably by an unsigned `key` of each record: byte by byte from the last one, in as many passes as the keys have
/// bytes in which they differ. Beats every sort that compares where keys take few values, as kinds and counts do.
template <class Record>
void radixSort(std::span<Record> records, std::vector<Record>& buffer) {
  using Key = decltype(Record::key);
  constexpr std::size_t kBytes = sizeof(Key);
  constexpr int kBits = std::numeric_limits<unsigned char>::digits;
  constexpr std::size_t kValues = std::size_t{1} << kBits;
  const auto byteOf = [](Key key, std::size_t byte) {
    return static_cast<unsigned char>(key >> (byte * static_cast<std::size_t>(kBits)));
  };

  Key differences = 0;
  for (const Record& record : records) differences |= record.key ^ records.front().key;
  if (differences == 0) return;
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

}  // namespace kelvar_2_1_7
