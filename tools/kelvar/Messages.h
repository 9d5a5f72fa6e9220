#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvar_tool {

/// A fault in the command line. what() is a sentence that names the argument and what was expected.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Prints one sentence on standard error, as `kelvar: SENTENCE`. The name is coloured on a terminal, unless NO_COLOR is
/// set and not empty. Failures to print are ignored.
void say(std::string_view sentence);

/// The text with control characters, line breaks and bytes that are not UTF-8 escaped as `\t`, `\n`, `\r`, `\\` and
/// `\xHH`. The result is one line and can be unescaped.
[[nodiscard]] std::string escaped(std::string_view text);

/// The text escaped and in quotes, for a sentence.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// `1 site`, `3 sites`.
[[nodiscard]] std::string counted(std::size_t count, const std::string& thing);

/// What the command is doing, on a line that is erased when it is done. Shown on a terminal only.
class Progress {
 public:
  Progress() noexcept;
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(std::string_view activity);
  /// Erases the line, before a sentence is printed.
  void clear() noexcept;

 private:
  bool terminal_;
  bool shown_ = false;
};

}  // namespace kelvar_tool
