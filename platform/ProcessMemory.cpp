#include "ProcessMemory.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace kelvar_platform {

namespace {

#ifdef __GLIBC__

/// What a large list leaves is the next one's: pages that the kernel has cleared once need not be cleared again. By
/// itself the allocator gives each large block back to the kernel, and the end of its heap.
void keepFreedMemory() noexcept {
  constexpr int kNone = -1;  // larger than any block
  static_cast<void>(::mallopt(M_MMAP_THRESHOLD, kNone));
  static_cast<void>(::mallopt(M_TRIM_THRESHOLD, kNone));
}

/// How far the heap may grow into huge pages: no further than leaves most of what there is to all else.
std::size_t roomForHugePages() noexcept {
  constexpr std::size_t kShare = 4;
  std::size_t room = std::size_t{4} << 30;
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  if (pages > 0 && pageSize > 0) {
    room = std::min(room, static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageSize) / kShare);
  }
  rlimit limit{};
  if (::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
    room = std::min(room, static_cast<std::size_t>(limit.rlim_cur) / kShare);
  }
  return room;
}

/// The kernel clears a huge page at once, and takes it back at once, where each of its small ones would cost a fault of
/// its own. It is told so of addresses that the heap is going to grow into: no memory is taken for them before.
void askForHugePages() noexcept {
  constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;
  const std::size_t size = roomForHugePages();
  void* const room = size > kHugePage ? std::malloc(size) : nullptr;
  if (room == nullptr) return;
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(room);
  const std::uintptr_t firstPage = (begin + kHugePage - 1) / kHugePage * kHugePage;
  ::madvise(reinterpret_cast<void*>(firstPage), begin + size - firstPage, MADV_HUGEPAGE);
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
