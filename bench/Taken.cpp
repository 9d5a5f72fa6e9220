#include "Taken.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local kelvar_bench::Taken total;

void* take(std::size_t size, std::size_t alignment) {
  ++total.calls;
  total.bytes += size;
  void* memory = alignment <= alignof(std::max_align_t)
                     ? std::malloc(size)
                     : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

kelvar_bench::Taken kelvar_bench::taken() noexcept {
  return total;
}

// The array and nothrow forms call these.
void* operator new(std::size_t size) {
  return take(size, 1);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return take(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
