#pragma once

#include <string>
#include <string_view>

namespace kelvar_tool {

/// A source position as the command line writes it: FILE:LINE[:COLUMN].
struct Place {
  std::string file;
  int line = 0;
  int column = 0;  ///< 0: the line as a whole
};

/// The file may hold colons itself: one or two numbers are taken from the end, and the rest is the file, as it is.
/// Throws UsageError, with `option` before the sentence, for what has no file or no line.
[[nodiscard]] Place placeIn(std::string_view option, const std::string& text);

/// FILE:LINE, and :COLUMN where there is one.
[[nodiscard]] std::string text(const Place& place);

}  // namespace kelvar_tool
