#include "items/ItemArena.h"

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <mutex>
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

/// A chunk is as large as a huge page and lies like one: walks over a long list then meet the limits of the address
/// translation five hundred times less often.
constexpr std::size_t kChunkSize = std::size_t{2} << 20;

std::byte* mapAligned() {
  void* const mapped =
      mmap(nullptr, 2 * kChunkSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  auto* const begin = static_cast<std::byte*>(mapped);
  const std::size_t before = (kChunkSize - reinterpret_cast<std::uintptr_t>(begin) % kChunkSize) % kChunkSize;
  std::byte* const chunk = begin + before;
  if (before != 0) munmap(begin, before);
  munmap(chunk + kChunkSize, kChunkSize - before);
  return chunk;
}

/// Memory of chunks that are gone, for those to come: pages that the kernel has cleared once need not be cleared again
/// for each result. No more of it than of chunks in use, so that it all goes with the items.
class Spare {
 public:
  std::byte* take() {
    const std::lock_guard lock(mutex_);
    if (first_ == nullptr) return nullptr;
    ++inUse_;
    --count_;
    return reinterpret_cast<std::byte*>(std::exchange(first_, first_->next));
  }
  void give(std::byte* memory) noexcept {
    const std::lock_guard lock(mutex_);
    --inUse_;
    ++count_;
    first_ = ::new (memory) Link{first_};
    for (; count_ > inUse_; --count_) munmap(std::exchange(first_, first_->next), kChunkSize);
  }
  /// One more in use that did not come from here.
  void count() noexcept {
    const std::lock_guard lock(mutex_);
    ++inUse_;
  }

 private:
  struct Link {
    Link* next;
  };
  std::mutex mutex_;  // every data object of the process shares it
  Link* first_ = nullptr;
  std::size_t count_ = 0;
  std::size_t inUse_ = 0;
};
Spare spare;

}  // namespace

struct ItemArena::Chunk {
  std::size_t made = 0;
  std::size_t users = 1;  // the items, and the arena that fills it

  static constexpr std::size_t kHeader = 64;
  static constexpr std::size_t kRoom = (kChunkSize - kHeader) / sizeof(SummaryItemImpl);

  static Chunk* open(bool isFirst) {
    std::byte* memory = spare.take();
    if (memory == nullptr) {
      memory = mapAligned();
      // A short list stays in a few small pages. Where there are no huge pages, small ones do.
      if (!isFirst) madvise(memory, kChunkSize, MADV_HUGEPAGE);
      spare.count();
    }
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
    Chunk* const next = Chunk::open(chunk_ == nullptr);
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
