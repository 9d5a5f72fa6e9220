#include "items/ItemArena.h"

#include <pthread.h>

#include <atomic>
#include <memory>
#include <new>

namespace kelvar_2_1_7::item_arena {

namespace {

// The address sanitizer watches the heap: an item that is used after it was deleted must not lie in memory
// that is still in use.
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
  /// Live items plus free slots, so that the count changes only when an item is deleted.
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

/// The chunk that a thread fills.
struct Filling {
  Chunk* chunk = nullptr;
  std::byte* next = nullptr;
  std::size_t left = 0;

  void open(std::size_t size) {
    void* const memory = ::operator new(kChunkSize);
    close();
    left = (kChunkSize - sizeof(Chunk)) / size;
    chunk = ::new (memory) Chunk{left + 1};
    next = static_cast<std::byte*>(memory) + sizeof(Chunk);
  }
  void close() noexcept {
    if (chunk != nullptr) Chunk::leave(chunk, left + 1);
    chunk = nullptr;
  }
};
thread_local constinit Filling filling;

/// Closes the chunk of each thread that ends. A destructor of the thread's variable would have to be registered, and
/// where there is no memory for that, the C library ends the process.
class AtThreadEnd {
 public:
  AtThreadEnd() noexcept : isThere_(::pthread_key_create(&key_, closeChunk) == 0) {}

  void watch(Filling& thread) const {
    if (!isThere_ || ::pthread_setspecific(key_, &thread) != 0) throw std::bad_alloc();
  }

 private:
  static void closeChunk(void* thread) noexcept {
    auto& ending = *static_cast<Filling*>(thread);
    ending.close();
    ending.left = 0;
  }

  pthread_key_t key_ = 0;
  bool isThere_;
};

void openChunk(Filling& thread, std::size_t size) {
  static const AtThreadEnd atThreadEnd;
  atThreadEnd.watch(thread);
  thread.open(size);
}

}  // namespace

void* allocate(std::size_t size) {
  if (kOneByOne) return ::operator new(size);
  const std::size_t taken = sizeof(Header) + size;
  Filling& current = filling;
  if (current.left == 0) openChunk(current, taken);
  // cppcheck-suppress legacyUninitvar; placement new initialises it
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
