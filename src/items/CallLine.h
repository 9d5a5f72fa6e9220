#pragma once

namespace kelvar_2_1_7 {

/// Has the processor fetch the cache line that an address lies in. A compiler may take a function that does no more
/// than this for one without effects and leave out its calls: the empty statement keeps them.
inline void callLine(const void* address) noexcept {
  __builtin_prefetch(address);
  asm volatile("");
}

}  // namespace kelvar_2_1_7
