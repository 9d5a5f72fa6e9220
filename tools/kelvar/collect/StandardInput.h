#pragma once

#include <sys/types.h>

#include <string>

#include "FileDescriptor.h"
#include "Interrupts.h"

namespace kelvar_tool {

/// Gives each run of the program the same standard input, from the current position on. Input that cannot be read twice
/// is copied into a file.
class StandardInput {
 public:
  /// Reads a pipe to its end into a file in `folder`; an interrupt ends that early. Throws a ReadError when the file
  /// cannot be written.
  StandardInput(const std::string& folder, const Interrupts& interrupts);

  /// A new descriptor, for one run.
  [[nodiscard]] kelvar_platform::FileDescriptor open() const;

 private:
  std::string file_;
  off_t offset_ = 0;
};

}  // namespace kelvar_tool
