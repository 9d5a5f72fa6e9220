#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_tool {

enum class Colour { automatic, always, never };

/// What standard output can show.
struct Terminal {
  std::size_t width = 80;  ///< columns, 80 at least; no limit where it is no terminal and COLUMNS says nothing
  bool coloured = false;
  bool bars = false;  ///< on a terminal, and where colours are asked for
};

/// COLUMNS decides the width where it is a number, then the terminal itself. There is colour on a terminal unless
/// NO_COLOR is set and not empty, and where `colour` says so.
[[nodiscard]] Terminal outputTerminal(Colour colour);

enum class Paint { plain, bold, dim, good, warning, bad };
/// The text between the codes that paint it; as it is where the terminal has no colours.
[[nodiscard]] std::string painted(const Terminal& terminal, Paint paint, std::string_view text);

/// What came from a file, for one line of a terminal: well-formed, without anything that a terminal or a reader would
/// obey. What turns the direction of writing is spelled out, since it could make a line say something else.
[[nodiscard]] std::string visible(std::string_view text);

/// At most `width` columns of `text`, which is visible, with an ellipsis where something is cut: its end or, with
/// `keepEnd`, its beginning.
[[nodiscard]] std::string cutTo(const std::string& text, std::size_t width, bool keepEnd = false);

}  // namespace kelvar_tool
