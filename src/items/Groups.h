#pragma once

#include <cstddef>
#include <span>

namespace kelvar_2_1_7 {

/// Calls `then` for each group of two or more neighbours that are `alike`, with a span of them.
template <class Record, class Alike, class Then>
void forEachGroup(std::span<Record> records, const Alike& alike, const Then& then) {
  for (std::size_t begin = 0, end = 1; begin < records.size(); begin = end++) {
    while (end < records.size() && alike(records[end - 1], records[end])) ++end;
    if (end - begin > 1) then(records.subspan(begin, end - begin));
  }
}

}  // namespace kelvar_2_1_7
