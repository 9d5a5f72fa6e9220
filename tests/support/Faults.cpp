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

}  // namespace support

// All forms, on malloc and free, since a sanitizer has its own of each and detects a mismatch.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return support::AllocationFault::strikes() ? nullptr : std::malloc(size);
}
void* operator new(std::size_t size) {
  void* const memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
