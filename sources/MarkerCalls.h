#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Brackets.h"
#include "Rules.h"
#include "Token.h"

namespace kelvar_sources {

/// A name in the code and, if it is called, the brackets of its arguments.
struct NamedCall {
  std::size_t first = 0;                ///< the first token of the qualified name
  std::size_t name = 0;                 ///< its last token
  std::optional<std::size_t> brackets;  ///< the opening bracket
};

/// Reads the call around the word at `name`, skipping template arguments.
[[nodiscard]] NamedCall callAt(const TokenList& list, const Brackets& brackets, std::size_t name);

/// Whether the name, as qualified here, matches the one of a rule: `oneapi::tbb::parallel_for` is `tbb::parallel_for`.
/// A macro or C function is neither qualified nor a member, and its declaration does not count as a use.
[[nodiscard]] bool isNamed(const TokenList& list, const NamedCall& call, std::string_view pattern);

/// The text of an argument, counted from 1: a literal without its quotes, or a name; else nothing.
[[nodiscard]] std::string argumentOf(const TokenList& list, const Brackets& brackets, const NamedCall& call, int number,
                                     bool literalOnly);

/// The value of a literal: escapes are replaced, and adjacent literals joined.
[[nodiscard]] std::string literalValue(std::string_view quoted);

}  // namespace kelvar_sources
