#include "support/Faults.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace support {

namespace {

CallLog* currentLog = nullptr;

}  // namespace

CallLog::CallLog() {
  currentLog = this;
}
CallLog::~CallLog() {
  currentLog = nullptr;
}

std::string CallLog::text(std::string_view prefix) const {
  std::string text;
  for (const std::string& line : lines_) {
    if (line.compare(0, prefix.size(), prefix) == 0) text += line + '\n';
  }
  return text;
}

void note(std::string_view subject, std::string_view operation, std::string_view argument) {
  if (currentLog == nullptr) return;
  const long paused = AllocationFault::left.exchange(0);
  std::string line = std::string(subject).append(" ").append(operation);
  if (!argument.empty()) line.append(" ").append(argument);
  currentLog->lines_.push_back(std::move(line));
  AllocationFault::left = paused;
}

void called(std::string_view subject, std::string_view operation, std::string_view argument) {
  note(subject, operation, argument);
  if (CallFault::strikes()) throw Fault(std::string(subject).append(" ").append(operation));
}

namespace {

void* allocate(std::size_t size, std::size_t alignment) noexcept {
  if (AllocationFault::strikes()) return nullptr;
  if (alignment <= alignof(std::max_align_t)) return std::malloc(size == 0 ? 1 : size);
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* allocateOrThrow(std::size_t size, std::size_t alignment) {
  void* const memory = allocate(size, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

}  // namespace support

// All forms, since a sanitizer brings its own of each and tells them from malloc.
using support::allocate;
using support::allocateOrThrow;
void* operator new(std::size_t size) {
  return allocateOrThrow(size, 0);
}
void* operator new[](std::size_t size) {
  return allocateOrThrow(size, 0);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, 0);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, 0);
}
void* operator new(std::size_t size, std::align_val_t to) {
  return allocateOrThrow(size, static_cast<std::size_t>(to));
}
void* operator new[](std::size_t size, std::align_val_t to) {
  return allocateOrThrow(size, static_cast<std::size_t>(to));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
