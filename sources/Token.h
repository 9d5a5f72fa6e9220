#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kelvar_sources {

enum class TokenKind : std::uint8_t {
  word,
  number,
  text,         ///< a string literal with its quotes and prefix
  character,    ///< a character literal
  punctuation,  ///< one byte
  pragma,       ///< a whole `#pragma` line with continuations, without a trailing comment
  remark,       ///< the content of a comment after `kelvar:`
  conditional,  ///< where a branch of the preprocessor begins or ends; `mark` says which
};

/// Marks of conditionals.
constexpr char kBranchesBegin = '?';
constexpr char kOtherBranch = ':';
constexpr char kBranchesEnd = '.';

struct Token {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
  std::uint32_t branch = 0;  ///< 0: unconditional code, or the first of several branches
  TokenKind kind = TokenKind::word;
  char mark = 0;  ///< the byte of a punctuation

  [[nodiscard]] bool is(char punctuation) const noexcept {
    return kind == TokenKind::punctuation && mark == punctuation;
  }
};

/// The tokens of a text in C or C++. Code that is certainly not compiled (`#if 0`), other directives and comments yield
/// no tokens.
struct TokenList {
  std::string_view source;
  std::vector<Token> tokens;
  std::vector<std::uint32_t> outerBranch;  ///< by branch: the branch around it

  [[nodiscard]] std::string_view text(const Token& token) const noexcept {
    return source.substr(token.offset, token.length);
  }
  [[nodiscard]] std::string_view text(std::size_t index) const noexcept { return text(tokens[index]); }
  /// Whether code in branch `from` is compiled together with code in branch `other`.
  [[nodiscard]] bool sees(std::uint32_t from, std::uint32_t other) const noexcept {
    while (from > other) from = outerBranch[from];  // an outer branch has the smaller number
    return from == other;
  }
};

/// Never fails: broken code yields the tokens that it has. Linear time.
[[nodiscard]] TokenList lexed(std::string_view source);

}  // namespace kelvar_sources
