#pragma once

#include <unistd.h>

#include <utility>

namespace kelvar_platform {

/// An open file, closed with its owner.
class FileDescriptor {
 public:
  FileDescriptor() noexcept = default;
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, kNone)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() {
    if (*this) ::close(descriptor_);
  }

  explicit operator bool() const noexcept { return descriptor_ >= 0; }
  [[nodiscard]] int get() const noexcept { return descriptor_; }

 private:
  static constexpr int kNone = -1;
  int descriptor_ = kNone;
};

}  // namespace kelvar_platform
