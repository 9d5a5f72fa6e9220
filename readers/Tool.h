#pragma once

#include <string>
#include <vector>

#include "FileDescriptor.h"

namespace kelvar_readers {

/// A program of another tool while it runs; its standard output is read from `output`.
class Tool {
 public:
  /// Starts it, found as a shell would find it; isRunning() is false where there is none of its name.
  explicit Tool(const std::vector<std::string>& command);
  ~Tool();
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;

  [[nodiscard]] bool isRunning() const noexcept { return process_ > 0; }
  [[nodiscard]] int output() const noexcept { return output_.get(); }
  /// Waits for its end and answers its exit status; 128 and more where a signal ended it.
  int wait();

 private:
  int process_ = 0;
  kelvar_platform::FileDescriptor output_;
};

}  // namespace kelvar_readers
