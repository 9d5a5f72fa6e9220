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

  /// Reads all of `file`. Throws a ReadError where it is no file that can be read, or changes meanwhile.
  explicit FileText(const std::string& file);

  [[nodiscard]] std::string_view view() const noexcept { return {text_.get(), size_}; }
  /// The size with what follows the text.
  [[nodiscard]] std::size_t allocated() const noexcept;

 private:
  std::size_t size_;
  std::unique_ptr<char[]> text_;
};

}  // namespace kelvar_platform
