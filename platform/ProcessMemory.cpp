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

// The thread sanitizer keeps shadow memory for all memory that was ever mapped, used or not.
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

/// Keeps freed memory in the heap, so that pages which the kernel has cleared once are reused. By default the allocator
/// returns each large block and the end of its heap to the kernel. False if the allocator has no such settings, as
/// those of sanitizers.
bool keepFreedMemory() noexcept {
  constexpr int kNone = -1;  // larger than any block
  const bool agrees = ::mallopt(M_MMAP_THRESHOLD, kNone) != 0;
  return ::mallopt(M_TRIM_THRESHOLD, kNone) != 0 && agrees;
}

/// How far the heap may use huge pages: most of the memory is left to everything else.
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

/// The kernel clears and frees a huge page at once; small pages cost a page fault each. The advice covers addresses
/// that the heap will grow into and takes no memory for them yet.
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

void returnFreedMemory() noexcept {
#ifdef __GLIBC__
  static_cast<void>(::malloc_trim(0));
#endif
}

}  // namespace kelvar_platform
