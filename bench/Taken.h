#pragma once

#include <cstdint>

namespace kelvar_bench {

/// The memory that this thread has allocated by operator new. Allocations by malloc in C libraries are not included.
struct Taken {
  std::uint64_t calls = 0;
  std::uint64_t bytes = 0;

  friend Taken operator-(const Taken& a, const Taken& b) { return {a.calls - b.calls, a.bytes - b.bytes}; }
  Taken& operator+=(const Taken& other) {
    calls += other.calls;
    bytes += other.bytes;
    return *this;
  }
};

[[nodiscard]] Taken taken() noexcept;

}  // namespace kelvar_bench
