#pragma once

#include <elfutils/libdw.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Record.h"

namespace kelvar_readers {

/// Lines and inlined calls by address, from the debug information of one file. A unit is read when an address in it is
/// first looked up. Addresses are those of the debug information.
class DebugInfo {
 public:
  explicit DebugInfo(Dwarf* dwarf);
  ~DebugInfo();
  DebugInfo(const DebugInfo&) = delete;
  DebugInfo& operator=(const DebugInfo&) = delete;

  [[nodiscard]] bool hasLines() const noexcept;
  /// The chain of places at the address, innermost first. An address without a line takes the line of the nearest
  /// instruction before it, back to `begin`, and `isGuessed` is set. Empty when nothing is known.
  [[nodiscard]] std::vector<Place> chainAt(std::uint64_t address, std::uint64_t begin, bool& isGuessed);

 private:
  struct Unit;
  struct Range {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::size_t unit = 0;
  };

  void addUnit(Dwarf_Die die, Dwarf_Die functions);
  Unit* unitAt(std::uint64_t address);

  std::vector<std::unique_ptr<Unit>> units_;
  std::vector<Range> ranges_;  // by address
};

}  // namespace kelvar_readers
