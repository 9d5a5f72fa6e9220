#include "items/ItemArena.h"

#include <atomic>
#include <memory>
#include <new>

namespace kelvar_2_1_7::item_arena {

namespace {

// The address sanitizer watches the heap: an item that is used after its end shall not hide among its neighbours.
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

constexpr std::size_t kChunkSize = std::size_t{64} << 10;

struct alignas(std::max_align_t) Chunk {
  /// The items in it, and those that the thread that fills it may still make: so making one counts nothing.
  std::atomic<std::size_t> users;

  static void leave(Chunk* chunk, std::size_t count) noexcept {
    if (chunk->users.fetch_sub(count, std::memory_order_acq_rel) != count) return;
    std::destroy_at(chunk);
    ::operator delete(chunk);
  }
};

/// Precedes each item: the chunk that it is in.
struct Header {
  Chunk* chunk;
};

/// The chunk that this thread fills.
struct Filling {
  Chunk* chunk = nullptr;
  std::byte* next = nullptr;
  std::size_t left = 0;

  ~Filling() { close(); }
  void open(std::size_t size) {
    void* const memory = ::operator new(kChunkSize);
    close();
    left = (kChunkSize - sizeof(Chunk)) / size;
    chunk = ::new (memory) Chunk{left + 1};
    next = static_cast<std::byte*>(memory) + sizeof(Chunk);
  }
  void close() noexcept {
    if (chunk != nullptr) Chunk::leave(chunk, left + 1);
  }
};
thread_local Filling filling;

}  // namespace

void* allocate(std::size_t size) {
  if (kOneByOne) return ::operator new(size);
  const std::size_t taken = sizeof(Header) + size;
  Filling& current = filling;
  if (current.left == 0) current.open(taken);
  auto* const header = ::new (current.next) Header{current.chunk};
  current.next += taken;
  --current.left;
  return header + 1;
}

void release(void* item) noexcept {
  if (kOneByOne) return ::operator delete(item);
  Chunk::leave((static_cast<Header*>(item) - 1)->chunk, 1);
}

}  // namespace kelvar_2_1_7::item_arena
