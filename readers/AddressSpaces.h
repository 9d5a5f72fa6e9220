#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

#include "Binaries.h"
#include "PerfLine.h"

namespace kelvar_readers {

/// Which file lies where in each process, and so what its addresses are.
class AddressSpaces {
 public:
  explicit AddressSpaces(Binaries& binaries) : binaries_(binaries) {}

  void add(const PerfMapping& mapping);
  void fork(const PerfFork& fork);

  /// A frame as the debug information has it; null where none is to be had. `isCaller` tells that the address is where
  /// the call returns to.
  [[nodiscard]] const Frame* frameAt(long process, const PerfFrame& frame, bool isCaller);

 private:
  struct Mapped {
    std::uint64_t end = 0;
    std::uint64_t offset = 0;
    std::string path;
  };
  using Space = std::map<std::uint64_t, Mapped>;  // by where they start

  [[nodiscard]] const Space::value_type* mappedAt(long process, std::uint64_t address) const;
  [[nodiscard]] std::optional<std::uint64_t> mappedAddress(long process, const PerfFrame& frame) const;
  [[nodiscard]] Symbols* symbolsOf(const PerfFrame& frame, const Space::value_type* mapped);

  Binaries& binaries_;
  std::unordered_map<long, Space> spaces_;
};

}  // namespace kelvar_readers
