#pragma once

#include <string>
#include <string_view>

namespace kelvar_tool {

/// A source position as the command line writes it: FILE:LINE[:COLUMN].
struct Place {
  std::string file;
  int line = 0;
  int column = 0;  ///< 0 for the whole line
};

/// The file may contain colons: one or two numbers are taken from the end, and the rest is the file. Throws UsageError,
/// which names `option`, if the file or the line is missing.
[[nodiscard]] Place placeIn(std::string_view option, const std::string& text);

/// FILE:LINE, with :COLUMN unless it is 0.
[[nodiscard]] std::string text(const Place& place);

}  // namespace kelvar_tool
