#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "items/CallLine.h"
#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// An item and what it is compared by at the moment.
template <class Key>
struct Keyed {
  Key key;
  SummaryItemImpl* item;
};

/// The common one: a key that is a number or can be written as one.
using Entry = Keyed<std::uint64_t>;
using Entries = std::span<Entry>;

/// How many items ahead memory is called for: items and their details lie anywhere.
inline constexpr std::size_t kSortStep = 32;

/// Has the processor fetch a detail: what it answers may stand behind its first cache line.
inline void callDetail(const digestio::SummaryDetail* detail) noexcept {
  constexpr std::size_t kCacheLine = 64;
  if (detail == nullptr) return;
  callLine(detail);
  callLine(reinterpret_cast<const char*>(detail) + kCacheLine);
}

/// The item of a record that holds one, or that stands for one of a list.
template <class Record>
[[nodiscard]] SummaryItemImpl* itemOf(const Record& record) noexcept {
  if constexpr (requires { record.item; }) {
    return record.item;
  } else {
    return record.site->item;
  }
}

/// Calls `then` for each group of two or more neighbours with one key, and `callAhead` for each neighbour that is about
/// to be looked at. `then` may use the keys for others.
template <class Record, class Then, class CallAhead>
void forEachTie(std::span<Record> records, const Then& then, const CallAhead& callAhead) {
  for (std::size_t begin = 0; begin < records.size();) {
    std::size_t end = begin + 1;
    while (end < records.size() && records[end].key == records[begin].key) ++end;
    if (end + kSortStep < records.size()) callAhead(records[end + kSortStep]);
    if (end - begin > 1) then(records.subspan(begin, end - begin));
    begin = end;
  }
}

/// The same where `then` looks at items, if the records have any.
template <class Record, class Then>
void forEachTie(std::span<Record> records, const Then& then) {
  forEachTie(records, then, [](const Record& record) {
    if constexpr (requires { record.item; }) callLine(&record.item->place());
  });
}

/// The same where it looks at nothing but the records.
template <class Record, class Then>
void forEachGroup(std::span<Record> records, const Then& then) {
  forEachTie(records, then, [](const Record&) {});
}

}  // namespace kelvar_2_1_7
