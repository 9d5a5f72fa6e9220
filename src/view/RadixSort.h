#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "items/CallLine.h"

namespace kelvar_2_1_7 {

/// The different keys of some records, as long as they are few, each with a number.
template <class Key>
class FewKeys {
 public:
  static constexpr std::size_t kMost = 256;

  /// The number of a key; kMost if there are too many to give it one.
  [[nodiscard]] std::size_t numberOf(Key key) noexcept {
    std::size_t place = static_cast<std::size_t>((key * kSpread) >> (kDigits - kPlaceBits));
    while (numbers_[place] != 0 && keys_[numbers_[place] - std::size_t{1}] != key) place = (place + 1) % kPlaces;
    if (numbers_[place] == 0) {
      if (size_ == kMost) return kMost;
      keys_[size_++] = key;
      numbers_[place] = static_cast<std::uint16_t>(size_);
    }
    return numbers_[place] - std::size_t{1};
  }
  [[nodiscard]] std::span<const Key> keys() const noexcept { return {keys_.data(), size_}; }

 private:
  static constexpr int kDigits = std::numeric_limits<Key>::digits;
  static constexpr int kPlaceBits = 10;  // four places for each key
  static constexpr std::size_t kPlaces = std::size_t{1} << kPlaceBits;
  static constexpr Key kSpread = static_cast<Key>(0x9e3779b97f4a7c15);  // the golden ratio's bits

  std::array<std::uint16_t, kPlaces> numbers_{};  // from 1 on; 0: a free place
  std::array<Key, kMost> keys_;
  std::size_t size_ = 0;
};

/// Sorts stably by an unsigned `key` of each record, if the keys take few values: each record moves once. Answers
/// whether they do; if not, nothing has changed.
template <class Record>
bool sortByFewKeys(std::span<Record> records, std::vector<Record>& buffer) {
  using Keys = FewKeys<decltype(Record::key)>;
  Keys few;
  std::array<std::size_t, Keys::kMost> places{};
  std::vector<unsigned char> numbers;
  numbers.reserve(records.size());
  for (const Record& record : records) {
    const std::size_t number = few.numberOf(record.key);
    if (number == Keys::kMost) return false;
    numbers.push_back(static_cast<unsigned char>(number));
    ++places[number];
  }
  std::array<std::size_t, Keys::kMost> inOrder{};
  const auto end = inOrder.begin() + static_cast<std::ptrdiff_t>(few.keys().size());
  for (auto next = inOrder.begin(); next != end; ++next) *next = static_cast<std::size_t>(next - inOrder.begin());
  std::sort(inOrder.begin(), end, [&](std::size_t a, std::size_t b) { return few.keys()[a] < few.keys()[b]; });
  std::size_t place = 0;
  for (auto next = inOrder.begin(); next != end; ++next) place += std::exchange(places[*next], place);

  buffer.assign(records.begin(), records.end());
  for (std::size_t i = 0; i < buffer.size(); ++i) records[places[numbers[i]]++] = buffer[i];
  return true;
}

/// A key of the n-th of some records.
struct NumberedKey {
  std::uint64_t key;
  std::size_t index;
};

/// Puts records in that order, and gives each the key that it has there.
template <class Record>
void takeOrder(std::span<const NumberedKey> order, std::span<Record> records, std::vector<Record>& buffer) {
  constexpr std::size_t kStep = 32;
  buffer.clear();
  buffer.reserve(records.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i + kStep < order.size()) callLine(&records[order[i + kStep].index]);
    buffer.push_back(records[order[i].index]);
    buffer.back().key = order[i].key;
  }
  std::copy(buffer.begin(), buffer.end(), records.begin());
}

/// Sorts stably by an unsigned `key` of each record: byte by byte from the last one, in as many passes as the keys have
/// bytes in which they differ.
template <class Record>
void sortByBytes(std::span<Record> records, std::vector<Record>& buffer) {
  constexpr std::size_t kBytes = sizeof(std::uint64_t);
  constexpr int kBits = std::numeric_limits<unsigned char>::digits;
  constexpr std::size_t kValues = std::size_t{1} << kBits;
  const auto byteOf = [](std::uint64_t key, std::size_t byte) {
    return static_cast<unsigned char>(key >> (byte * static_cast<std::size_t>(kBits)));
  };

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

/// The same, however large records are: those that are larger than a key and an index move once.
template <class Record>
void radixSort(std::span<Record> records, std::vector<Record>& buffer) {
  if constexpr (sizeof(Record) > sizeof(NumberedKey)) {
    std::vector<NumberedKey> order;
    std::vector<NumberedKey> room;
    order.reserve(records.size());
    for (const Record& record : records) order.push_back({record.key, order.size()});
    sortByBytes(std::span(order), room);
    takeOrder(order, records, buffer);
  } else {
    sortByBytes(records, buffer);
  }
}

}  // namespace kelvar_2_1_7
