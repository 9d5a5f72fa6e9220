#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// A file's whole text in one buffer, followed by the zero bytes that the parser may read past its end.
class FileText {
 public:
  /// The reach of the parser's 32-bit offsets.
  static constexpr std::size_t kMaxSize = 0xFFFFFFFF;

  /// Reads all of `file` in place of the text before it, in the same memory if that is large enough. Throws a ReadError
  /// if it cannot be read or changes meanwhile; the text is then empty.
  void read(const std::string& file);

  [[nodiscard]] std::string_view view() const noexcept { return {memory_.get(), size_}; }
  /// The size with the bytes after the text.
  [[nodiscard]] std::size_t allocated() const noexcept { return allocated_; }

 private:
  struct Free {
    void operator()(char* memory) const noexcept;
  };

  /// Makes room for that many bytes and the zero bytes after them.
  void makeRoom(std::size_t size);

  std::size_t size_ = 0;
  std::size_t allocated_ = 0;
  std::unique_ptr<char[], Free> memory_;
};

}  // namespace kelvar_platform
