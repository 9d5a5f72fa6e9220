#pragma once

#include <sys/types.h>

#include <string>

#include "FileDescriptor.h"

namespace kelvar_tool {

/// The standard input, once for each run of the program, from where it stands now. What cannot be read twice is kept in
/// a file until then.
class StandardInput {
 public:
  /// `folder` gets the file. Throws a ReadError where it cannot be written.
  explicit StandardInput(const std::string& folder);

  /// For one run.
  [[nodiscard]] kelvar_platform::FileDescriptor open() const;

 private:
  std::string file_;
  off_t offset_ = 0;
};

}  // namespace kelvar_tool
