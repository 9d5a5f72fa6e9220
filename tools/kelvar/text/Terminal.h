#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_tool {

enum class Colour { automatic, always, never };

/// What standard output can show.
struct Terminal {
  std::size_t width =
      80;  ///< in columns, at least 80; unlimited if standard output is no terminal and COLUMNS is unset
  bool coloured = false;
  bool bars = false;  ///< true on a terminal, and if colours are forced
};

/// The width is COLUMNS if that is a number, else that of the terminal. With Colour::automatic, a terminal is coloured
/// unless NO_COLOR is set and not empty.
[[nodiscard]] Terminal outputTerminal(Colour colour);

enum class Paint { plain, bold, dim, good, warning, bad };
/// The text with the codes of the paint around it; unchanged if the terminal has no colours.
[[nodiscard]] std::string painted(const Terminal& terminal, Paint paint, std::string_view text);

/// Text from a file, made safe for one line of a terminal: valid UTF-8, with control characters escaped. Marks that
/// change the direction of writing are escaped too, since they could make a line read differently.
[[nodiscard]] std::string visible(std::string_view text);

/// `text`, which must be visible(), cut to `width` columns including an ellipsis. The end is cut or, with `keepEnd`,
/// the beginning.
[[nodiscard]] std::string cutTo(const std::string& text, std::size_t width, bool keepEnd = false);

}  // namespace kelvar_tool
