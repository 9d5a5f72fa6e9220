#pragma once

#include <optional>
#include <string_view>

namespace kelvar_sources {

/// How a file is read.
enum class Language {
  c,             ///< C, C++ and what is written like them
  freeFortran,   ///< `!` begins a comment anywhere
  fixedFortran,  ///< a `c`, `*` or `!` in column 1 makes a comment, column 6 continues a line
};

/// By the ending of the path; none where it is no ending of a source file.
[[nodiscard]] std::optional<Language> languageOf(std::string_view path);

/// Whether these bytes are no text: a zero byte among the first ones.
[[nodiscard]] bool isBinary(std::string_view bytes);

}  // namespace kelvar_sources
