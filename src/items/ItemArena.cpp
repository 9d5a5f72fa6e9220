#include "items/ItemArena.h"

#include <sys/mman.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace kelvar_2_1_7 {

namespace {

// The address sanitizer watches the heap: an item that is used when it is gone shall not hide among its neighbours.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kOneByOne = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kOneByOne = true;
#else
constexpr bool kOneByOne = false;
#endif
#else
constexpr bool kOneByOne = false;
#endif

/// A chunk lies on a multiple of its size, so that an item's address tells its chunk. It may be one huge page.
constexpr std::size_t kChunkSize = std::size_t{2} << 20;

std::byte* mapAligned(bool isHuge) {
  void* const mapped =
      mmap(nullptr, 2 * kChunkSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  auto* const begin = static_cast<std::byte*>(mapped);
  const std::size_t before = (kChunkSize - reinterpret_cast<std::uintptr_t>(begin) % kChunkSize) % kChunkSize;
  std::byte* const chunk = begin + before;
  if (before != 0) munmap(begin, before);
  munmap(chunk + kChunkSize, kChunkSize - before);
  if (isHuge) madvise(chunk, kChunkSize, MADV_HUGEPAGE);
  return chunk;
}

/// Memory of chunks that are gone, for those to come: pages that the kernel has cleared once need not be cleared again
/// for each result. It all goes with the last chunk in use. Every data object of the process shares it, on whatever
/// thread, and none waits for another.
class Spare {
 public:
  /// Null where there is none.
  std::byte* take() noexcept {
    for (std::atomic<std::byte*>& place : places_) {
      if (std::byte* const memory = place.exchange(nullptr)) return memory;
    }
    return nullptr;
  }
  void give(std::byte* memory) noexcept {
    for (std::atomic<std::byte*>& place : places_) {
      std::byte* none = nullptr;
      if (place.compare_exchange_strong(none, memory)) return leave();
    }
    munmap(memory, kChunkSize);
    leave();
  }
  /// One chunk more in use.
  void enter() noexcept { ++inUse_; }
  /// Whether lists are so long that the next chunk is likely to be filled. The kernel then clears a huge page at once;
  /// most lists take less memory than one.
  [[nodiscard]] bool isMuchInUse() const noexcept { return inUse_ >= kMuch; }

 private:
  static constexpr std::size_t kMuch = 4;
  static constexpr std::size_t kPlaces = 128;  // a quarter of a gigabyte: what a result of a million sites gives back

  void leave() noexcept {
    if (--inUse_ != 0) return;
    while (std::byte* const memory = take()) munmap(memory, kChunkSize);
  }

  std::array<std::atomic<std::byte*>, kPlaces> places_{};
  std::atomic<std::size_t> inUse_ = 0;
};
Spare spare;

}  // namespace

struct ItemArena::Chunk {
  std::size_t made = 0;
  std::size_t users = 1;  // the items, and the arena that fills it

  static constexpr std::size_t kHeader = 64;
  static constexpr std::size_t kRoom = (kChunkSize - kHeader) / sizeof(SummaryItemImpl);

  static Chunk* open() {
    std::byte* memory = spare.take();
    if (memory == nullptr) memory = mapAligned(spare.isMuchInUse());
    spare.enter();
    return ::new (memory) Chunk;
  }
  static Chunk* of(void* place) noexcept {
    auto* const bytes = static_cast<std::byte*>(place);
    return std::launder(reinterpret_cast<Chunk*>(bytes - reinterpret_cast<std::uintptr_t>(bytes) % kChunkSize));
  }
  void* next() noexcept {
    ++users;
    return reinterpret_cast<std::byte*>(this) + kHeader + sizeof(SummaryItemImpl) * made++;
  }
  void leave() noexcept {
    if (--users == 0) spare.give(reinterpret_cast<std::byte*>(this));
  }
};

void* ItemArena::take() {
  if (kOneByOne) return nullptr;
  if (chunk_ == nullptr || chunk_->made == Chunk::kRoom) {
    Chunk* const next = Chunk::open();
    retire();
    chunk_ = next;
  }
  return chunk_->next();
}

void ItemArena::giveBack(void* place) noexcept {
  Chunk::of(place)->leave();
}

void ItemArena::retire() noexcept {
  if (chunk_ != nullptr) std::exchange(chunk_, nullptr)->leave();
}

}  // namespace kelvar_2_1_7
