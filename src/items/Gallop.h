#pragma once

#include <algorithm>
#include <cstddef>

namespace kelvar_2_1_7 {

/// The first index from `begin` up to `end` that `isBefore(index)` does not hold for, as it does for all up to there;
/// `end` if it holds for all. Takes few calls where few stand in between.
template <class IsBefore>
[[nodiscard]] std::size_t gallop(std::size_t begin, std::size_t end, IsBefore isBefore) {
  std::size_t step = 1;
  std::size_t next = begin;
  while (next < end && isBefore(next)) {
    begin = next + 1;
    next = begin + std::min(step, end - begin);
    step *= 2;
  }
  std::size_t last = std::min(next, end);
  while (begin < last) {
    const std::size_t middle = begin + (last - begin) / 2;
    if (isBefore(middle)) {
      begin = middle + 1;
    } else {
      last = middle;
    }
  }
  return begin;
}

}  // namespace kelvar_2_1_7
