#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// A file's whole text in one buffer, followed by the zero bytes that the parser may read past its end.
class FileText {
 public:
  /// What the parser's 32-bit offsets reach.
  static constexpr std::size_t kMaxSize = 0xFFFFFFFF;

  /// Reads all of `file` in place of what was read before, in the same memory where it suffices. Throws a ReadError
  /// where it is no file that can be read, or changes meanwhile; there is no text then.
  void read(const std::string& file);

  /// Copies `text` in place of what was read before.
  void take(std::string_view text);

  [[nodiscard]] std::string_view view() const noexcept { return {memory_.get(), size_}; }
  /// The size with what follows the text.
  [[nodiscard]] std::size_t allocated() const noexcept { return allocated_; }

 private:
  struct Free {
    void operator()(char* memory) const noexcept;
  };

  /// Sees to it that there is room for so many bytes and what follows them.
  void makeRoom(std::size_t size);

  std::size_t size_ = 0;
  std::size_t allocated_ = 0;
  std::unique_ptr<char[], Free> memory_;
};

}  // namespace kelvar_platform
