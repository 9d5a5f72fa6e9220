#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvar_tool {

/// Standard output could not be written. what() is the sentence.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Opens those of the three standard descriptors that the caller left closed on /dev/null. Otherwise a file opened
/// later could get the number of standard output and be overwritten.
void holdStandardDescriptors() noexcept;

/// Writes all of `text` to the descriptor, across interruptions and partial writes, also if it is non-blocking. Returns
/// 0 or the errno of the failure.
[[nodiscard]] int writeAll(int descriptor, std::string_view text) noexcept;

/// Writes `text` to standard output. If the reader has closed the pipe, SIGPIPE ends the command silently, as in any
/// pipeline; if that signal is ignored, it is not an error. Throws OutputError for other failures.
void print(std::string_view text);

/// Buffers small pieces of standard output, so that a report of any length takes little memory and few writes.
class PrintedPieces {
 public:
  /// The buffer, to which pieces are appended.
  [[nodiscard]] std::string& text() noexcept { return text_; }
  /// Prints the buffer if it is large enough. Called between pieces.
  void pass();
  /// Prints the rest.
  void finish();

 private:
  std::string text_;
};

}  // namespace kelvar_tool
