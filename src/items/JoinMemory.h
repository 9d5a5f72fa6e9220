#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "items/HandleIndex.h"
#include "items/RecordedSites.h"

namespace kelvar_2_1_7 {

/// What joins of results that know the same recorded sites have found of these. A recorded site that met an item of the
/// list has told it all it can tell.
struct MetSites {
  RecordedSites::Number of = 0;               // how many there were: they may be read only for a later result
  std::vector<RecordedSites::Number> moved;   // those that met one on another line
  std::vector<RecordedSites::Number> others;  // ascending; those that are yet to meet one
};

/// What a join leaves to the next one of the same list, so that this need not look at every item again. Whoever changes
/// the list, or the order of its items, in between clears it. Recorded sites may be read in between, and stay from then
/// on.
struct JoinMemory {
  std::optional<HandleIndex> byHandle;  // of the list, which stands as a join leaves it; nothing: it does not
  std::vector<std::size_t> loose;       // slots, ascending, of items that may not stand right any more
  std::size_t apart = 0;                // how many at the end of the list are no match for any other
  std::optional<MetSites> met;          // nothing: each recorded site is to be looked at

  void clear() noexcept { *this = JoinMemory(); }
};

}  // namespace kelvar_2_1_7
