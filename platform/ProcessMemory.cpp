#include "ProcessMemory.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace kelvar_platform {

namespace {

#ifdef __GLIBC__

/// What a large list leaves is the next one's: pages that the kernel has cleared once need not be cleared again. By
/// itself the allocator gives each large block back to the kernel.
void keepFreedMemory() noexcept {
  constexpr int kAnySize = std::numeric_limits<int>::max();
  static_cast<void>(::mallopt(M_MMAP_THRESHOLD, kAnySize));
  static_cast<void>(::mallopt(M_TRIM_THRESHOLD, kAnySize));
}

/// The kernel clears a huge page at once, and takes it back at once, where each of its small ones would cost a fault of
/// its own. It is told so of addresses that the heap is going to grow into: no memory is taken for them before.
void askForHugePages() noexcept {
  constexpr std::size_t kRoom = std::size_t{1} << 30;  // a report on a million sites takes most of it
  constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;
  void* const room = std::malloc(kRoom);
  if (room == nullptr) return;
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(room);
  const std::uintptr_t firstPage = (begin + kHugePage - 1) / kHugePage * kHugePage;
  ::madvise(reinterpret_cast<void*>(firstPage), begin + kRoom - firstPage, MADV_HUGEPAGE);
  std::free(room);
}

#endif

}  // namespace

void expectLargeLists() noexcept {
#ifdef __GLIBC__
  keepFreedMemory();
  askForHugePages();
#endif
}

}  // namespace kelvar_platform
