#pragma once

#include <sys/types.h>

#include <string>

#include "FileDescriptor.h"
#include "Interrupts.h"

namespace kelvar_tool {

/// The standard input, once for each run of the program, from where it stands now. What cannot be read twice is kept in
/// a file until then.
class StandardInput {
 public:
  /// `folder` gets the file. Returns at a signal, too. Throws a ReadError where the file cannot be written.
  StandardInput(const std::string& folder, const Interrupts& interrupts);

  /// For one run.
  [[nodiscard]] kelvar_platform::FileDescriptor open() const;

 private:
  std::string file_;
  off_t offset_ = 0;
};

}  // namespace kelvar_tool
