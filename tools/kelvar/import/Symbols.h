#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Record.h"

namespace kelvar_import {

/// Where a program's instructions come from: its line table and its symbols, read once. The addresses are those of a
/// run under valgrind, which loads a position-independent program at an address of its own.
class Symbols {
 public:
  /// `binary` is the program or its separate debug file. Throws kelvar_platform::ReadError.
  explicit Symbols(const std::string& binary);
  ~Symbols();
  Symbols(const Symbols&) = delete;
  Symbols& operator=(const Symbols&) = delete;

  /// Whether an instruction at `address` is the program's own.
  [[nodiscard]] bool holds(std::uint64_t address) const noexcept;
  [[nodiscard]] Place placeOf(std::uint64_t address) const;

 private:
  struct Tables;
  std::unique_ptr<Tables> tables_;
};

}  // namespace kelvar_import
