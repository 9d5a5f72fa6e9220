#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvar_tool {

/// Standard output did not take what it was given. what() is the sentence.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Opens what the caller left closed of the three standard descriptors on /dev/null. Without it, a file that is opened
/// later would take the number of one, and be written into.
void holdStandardDescriptors() noexcept;

/// Writes all of `text` to the descriptor, through interruptions, partial writes and a descriptor that does not block.
/// Answers 0, or the error number that ended it.
[[nodiscard]] int writeAll(int descriptor, std::string_view text) noexcept;

/// Writes `text` to standard output as it is. A reader who has gone away has seen enough: SIGPIPE then ends the command
/// without a word, as in any pipeline, and where the caller has that signal ignored, it is no error. Throws OutputError
/// for any other.
void print(std::string_view text);

/// Gathers small pieces of standard output, so that a report of any length takes little memory and few writes.
class PrintedPieces {
 public:
  /// Where the next piece is appended.
  [[nodiscard]] std::string& text() noexcept { return text_; }
  /// Prints what has gathered, once that is worth it. Called between pieces.
  void pass();
  /// Prints the rest.
  void finish();

 private:
  std::string text_;
};

}  // namespace kelvar_tool
