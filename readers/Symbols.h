#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Record.h"

namespace kelvar_readers {

/// Maps the addresses of a program or library to functions and source lines, including inlined calls. Units of the
/// debug information are read on demand. A separate debug file is found by build-id or debuglink.
///
/// Addresses are those in the file, as linked, not those of a run.
class Symbols {
 public:
  /// `binary` may also be a separate debug file. Throws kelvar_platform::ReadError when it is no ELF file with code.
  /// The frames must outlive this object.
  Symbols(const std::string& binary, Frames& frames);
  ~Symbols();
  Symbols(const Symbols&) = delete;
  Symbols& operator=(const Symbols&) = delete;

  /// Whether `address` is in executable code of this file.
  [[nodiscard]] bool holds(std::uint64_t address) const noexcept;
  /// Whether the loader chooses the load address.
  [[nodiscard]] bool isPositionIndependent() const noexcept;
  /// Whether there is debug information with lines.
  [[nodiscard]] bool hasLines() const noexcept;
  /// The build-id in hexadecimal; empty when there is none.
  [[nodiscard]] const std::string& buildId() const noexcept;
  /// The address of the code at `offset` of the file; none when no code is loaded from there.
  [[nodiscard]] std::optional<std::uint64_t> addressOfOffset(std::uint64_t offset) const noexcept;
  /// The first address of the linker's function around `address`; none when there is no such function.
  [[nodiscard]] std::optional<std::uint64_t> functionBegin(std::uint64_t address) const noexcept;
  /// The address of the only function of this name, mangled or demangled; none when there are several or none.
  [[nodiscard]] std::optional<std::uint64_t> addressOfFunction(const std::string& name);

  /// The chain of inlined calls at the address, and the linker's function around it. An address without a line takes
  /// the nearest line before it in its function. Always the same object for an address; it lives as long as the frames.
  [[nodiscard]] const Frame& frameAt(std::uint64_t address);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_readers
