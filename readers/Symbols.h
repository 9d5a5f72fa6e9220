#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Record.h"

namespace kelvar_readers {

/// A program or a library as the linker made it: what its instructions were in the source, inlined calls included. It
/// reads only the units of the debug information that it is asked about. Debug information that lies in a file of its
/// own is found by build-id or debuglink.
///
/// Addresses are those that the linker gave, not those of a run.
class Symbols {
 public:
  /// `binary` may be the separate debug file too. Throws kelvar_platform::ReadError where it is no ELF file with code.
  Symbols(const std::string& binary, Frames& frames);
  ~Symbols();
  Symbols(const Symbols&) = delete;
  Symbols& operator=(const Symbols&) = delete;

  /// Whether an instruction at `address` can be of this file.
  [[nodiscard]] bool holds(std::uint64_t address) const noexcept;
  /// Whether the loader chooses where it lies.
  [[nodiscard]] bool isPositionIndependent() const noexcept;
  /// Whether it has lines at all.
  [[nodiscard]] bool hasLines() const noexcept;
  /// The build-id in hexadecimal; empty where it has none.
  [[nodiscard]] const std::string& buildId() const noexcept;
  /// The address of what lies at `offset` of the file; none where nothing of it is loaded.
  [[nodiscard]] std::optional<std::uint64_t> addressOfOffset(std::uint64_t offset) const noexcept;
  /// Where the linker's function around `address` begins.
  [[nodiscard]] std::optional<std::uint64_t> functionBegin(std::uint64_t address) const noexcept;
  /// The address of the one function of this name, mangled or as tools show it; none where there are several or none.
  [[nodiscard]] std::optional<std::uint64_t> addressOfFunction(const std::string& name);

  /// The chain of inlined calls at the address, with the linker's function around it. What has no line of its own
  /// counts for the nearest line before it in its function. One object for one address, as long as the frames live.
  [[nodiscard]] const Frame& frameAt(std::uint64_t address);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_readers
