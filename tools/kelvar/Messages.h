#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvar_tool {

/// The command line makes no sense. what() is a sentence that names the argument and what was expected of it.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Says one sentence on standard error, as `kelvar: SENTENCE`. The name is coloured on a terminal, unless NO_COLOR is
/// set and not empty. What cannot be said is not said: standard error has nowhere to complain to.
void say(std::string_view sentence);

/// The text with `\t`, `\n`, `\r`, `\\` and `\xHH` for what a terminal would obey or a line would break at. What it
/// answers is one line, and can be turned back.
[[nodiscard]] std::string escaped(std::string_view text);

/// The text in quotes, escaped, for a sentence.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// What the command is at, on a line that is gone when it is done. Shown on a terminal only.
class Progress {
 public:
  Progress() noexcept;
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(std::string_view activity);
  /// Takes the line away, so that a sentence can stand there.
  void clear() noexcept;

 private:
  bool terminal_;
  bool shown_ = false;
};

}  // namespace kelvar_tool
