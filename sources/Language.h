#pragma once

#include <optional>
#include <string_view>

namespace kelvar_sources {

/// The syntax of a source file.
enum class Language {
  c,             ///< C, C++ and languages with the same tokens
  freeFortran,   ///< `!` begins a comment anywhere
  fixedFortran,  ///< a `c`, `*` or `!` in column 1 makes a comment, column 6 continues a line
};

/// By the suffix of the path; none if that is no suffix of a source file.
[[nodiscard]] std::optional<Language> languageOf(std::string_view path);

/// Whether the bytes are no text: there is a zero byte near the beginning.
[[nodiscard]] bool isBinary(std::string_view bytes);

}  // namespace kelvar_sources
