#pragma once

#include <string>
#include <vector>

#include "FileDescriptor.h"

namespace kelvar_readers {

/// A child process whose standard output is read from `output`.
class Tool {
 public:
  /// Starts the command, found in PATH. isRunning() is false when that failed.
  explicit Tool(const std::vector<std::string>& command);
  ~Tool();
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;

  [[nodiscard]] bool isRunning() const noexcept { return process_ > 0; }
  [[nodiscard]] int output() const noexcept { return output_.get(); }
  /// Waits for the end and returns the exit status; 128 + N when signal N ended it; 127 when it is not running.
  int wait();

 private:
  int process_ = 0;
  kelvar_platform::FileDescriptor output_;
};

}  // namespace kelvar_readers
