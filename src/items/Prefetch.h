#pragma once

#include <cstddef>

namespace kelvar_2_1_7 {

/// How many items ahead of a walk its memory is prefetched. Lists are often walked out of memory order.
inline constexpr std::size_t kPrefetchDistance = 16;

inline void prefetchLine(const void* address) noexcept {
  __builtin_prefetch(address);
  // Without this a compiler takes a function that only prefetches for one without effects, and drops calls to it.
  asm volatile("");
}

/// All cache lines of an object; nothing for null.
template <class T>
void prefetch(const T* object) noexcept {
  constexpr std::size_t kLine = 64;
  if (object == nullptr) return;
  const char* const bytes = reinterpret_cast<const char*>(object);
  for (std::size_t offset = 0; offset < sizeof(T); offset += kLine) prefetchLine(bytes + offset);
  prefetchLine(bytes + sizeof(T) - 1);
}

/// The first two cache lines of a suite's object, whose size nobody knows; nothing for null.
template <class T>
void prefetchBeginning(const T* object) noexcept {
  if (object == nullptr) return;
  prefetchLine(object);
  prefetchLine(reinterpret_cast<const char*>(object) + 64);
}

}  // namespace kelvar_2_1_7
