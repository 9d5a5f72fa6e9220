#include "ProcessMemory.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace kelvar_platform {

namespace {

// The thread sanitizer keeps books on all memory that was ever asked for, used or not.
#if defined(__SANITIZE_THREAD__)
constexpr bool kKeepsBooks = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
constexpr bool kKeepsBooks = true;
#else
constexpr bool kKeepsBooks = false;
#endif
#else
constexpr bool kKeepsBooks = false;
#endif

#ifdef __GLIBC__

/// What a large list leaves is the next one's: pages that the kernel has cleared once need not be cleared again. By
/// itself the allocator gives each large block back to the kernel, and the end of its heap. Answers whether it agrees:
/// one that stands in for it, as those of sanitizers do, has no such heap.
bool keepFreedMemory() noexcept {
  constexpr int kNone = -1;  // larger than any block
  const bool agrees = ::mallopt(M_MMAP_THRESHOLD, kNone) != 0;
  return ::mallopt(M_TRIM_THRESHOLD, kNone) != 0 && agrees;
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

struct Free {
  void operator()(void* memory) const noexcept { ::operator delete(memory); }
};

/// The kernel clears a huge page at once, and takes it back at once, where each of its small ones would cost a fault of
/// its own. It is told so of addresses that the heap is going to grow into: no memory is taken for them before.
void askForHugePages() noexcept {
  constexpr std::size_t kHugePage = std::size_t{2} << 20;
  std::size_t size = roomForHugePages();
  const std::unique_ptr<void, Free> room(::operator new(size, std::nothrow));
  void* pages = room.get();
  if (pages == nullptr || std::align(kHugePage, kHugePage, pages, size) == nullptr) return;
  ::madvise(pages, size, MADV_HUGEPAGE);
}

#endif

}  // namespace

void expectLargeLists() noexcept {
#ifdef __GLIBC__
  if (keepFreedMemory() && !kKeepsBooks) askForHugePages();
#endif
}

}  // namespace kelvar_platform
