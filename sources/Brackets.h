#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Token.h"

namespace kelvar_sources {

/// Finds matching brackets and the functions around tokens. If branches of the preprocessor open or close different
/// numbers of brackets, the first branch counts. Brackets nested deeper than 65,536 are only counted; their content
/// belongs to the innermost bracket above that depth.
class Brackets {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// `tokens` must outlive this object.
  explicit Brackets(const TokenList& tokens);

  /// The closing bracket of an opening one; kNone when there is none, and for any other token.
  [[nodiscard]] std::uint32_t partner(std::size_t token) const noexcept { return partner_[token]; }
  /// The innermost open `{` around a token; kNone when there is none.
  [[nodiscard]] std::uint32_t braceAround(std::size_t token) const noexcept {
    return brace_[token] == kNone ? kNone : braces_[brace_[token]].token;
  }
  /// The innermost open bracket of any kind around a token; kNone when there is none.
  [[nodiscard]] std::uint32_t bracketAround(std::size_t token) const noexcept { return outer_[token]; }
  /// The name of the function around a token as in its definition, after the names of the classes around it; empty
  /// outside of functions.
  [[nodiscard]] std::string functionAround(std::size_t token) const;

 private:
  enum class Role : std::uint8_t { block, function, scope, initialiser };
  struct Brace {
    std::uint32_t token = 0;
    std::uint32_t outer = kNone;     ///< the brace around it, as an index
    std::uint32_t function = kNone;  ///< the innermost function, as an index of braces
    std::uint32_t declaration = 0;   ///< of an initialiser: where the declaration around it begins
    std::uint32_t name = kNone;      ///< as an index of names; most braces have none
    Role role = Role::block;
  };
  /// The state of the walk, restored when another branch begins.
  struct State {
    std::uint32_t bracket = kNone;
    std::uint32_t brace = kNone;  ///< as an index of braces
    std::size_t declaration = 0;  ///< the first token after the last `;`, `{` or `}`
    std::uint32_t depth = 0;      ///< the number of open brackets
    std::uint32_t deeper = 0;     ///< the number of open brackets beyond the greatest depth
  };
  struct Group {
    State before;
    State afterFirst;
    bool other = false;
  };

  void take(std::size_t index);
  void takeConditional(char mark, std::size_t index);
  void open(std::size_t index, char mark);
  void close(std::size_t index, char mark);
  [[nodiscard]] Brace described(std::size_t index);
  [[nodiscard]] std::string nameOf(const Brace& brace) const;
  [[nodiscard]] bool inFunction() const noexcept;

  const TokenList& list_;
  std::vector<std::uint32_t> partner_;
  std::vector<std::uint32_t> outer_;
  std::vector<std::uint32_t> brace_;  // as indices of braces
  std::vector<Brace> braces_;
  std::vector<std::string> names_;
  std::vector<Group> groups_;
  State state_;
};

}  // namespace kelvar_sources
