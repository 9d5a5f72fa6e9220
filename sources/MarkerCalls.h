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

/// A name in the code and, where it is called, the brackets of its arguments.
struct NamedCall {
  std::size_t first = 0;                ///< the first token of the name with what qualifies it
  std::size_t name = 0;                 ///< the last token of it
  std::optional<std::size_t> brackets;  ///< the opening one
};

/// Reads around the word at `name`; template arguments are stepped over.
[[nodiscard]] NamedCall callAt(const TokenList& list, const Brackets& brackets, std::size_t name);

/// Whether the name, as it is qualified here, is the one of a rule: `oneapi::tbb::parallel_for` is `tbb::parallel_for`.
/// A macro or a function of C is neither qualified nor a member, and what declares it is none of its uses.
[[nodiscard]] bool isNamed(const TokenList& list, const NamedCall& call, std::string_view pattern);

/// The text of an argument, counted from 1: a literal without its quotes, a name as it is, else nothing.
[[nodiscard]] std::string argumentOf(const TokenList& list, const Brackets& brackets, const NamedCall& call, int number,
                                     bool literalOnly);

/// What a literal stands for: its escapes undone, several in a row as one.
[[nodiscard]] std::string literalValue(std::string_view quoted);

}  // namespace kelvar_sources
