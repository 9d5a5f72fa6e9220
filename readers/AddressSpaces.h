#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

#include "Binaries.h"
#include "PerfLine.h"

namespace kelvar_readers {

/// The files mapped into each process; turns the addresses that perf prints into places in the source.
class AddressSpaces {
 public:
  explicit AddressSpaces(Binaries& binaries) : binaries_(binaries) {}

  void add(const PerfMapping& mapping);
  void fork(const PerfFork& fork);

  /// The frame according to the debug information; null when there is none. `isCaller`: the address is a return
  /// address, so the call itself is just before it.
  [[nodiscard]] const Frame* frameAt(long process, const PerfFrame& frame, bool isCaller);

 private:
  struct Mapped {
    std::uint64_t end = 0;
    std::uint64_t offset = 0;
    std::string path;
  };
  using Space = std::map<std::uint64_t, Mapped>;  // by start address

  [[nodiscard]] const Space::value_type* mappedAt(long process, std::uint64_t address) const;
  [[nodiscard]] std::optional<std::uint64_t> mappedAddress(long process, const PerfFrame& frame) const;
  [[nodiscard]] Symbols* symbolsOf(const PerfFrame& frame, const Space::value_type* mapped);

  Binaries& binaries_;
  std::unordered_map<long, Space> spaces_;
};

}  // namespace kelvar_readers
