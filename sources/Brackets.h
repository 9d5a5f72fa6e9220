#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Token.h"

namespace kelvar_sources {

/// Which brackets belong together, and which functions enclose what. Of branches of the preprocessor that open or
/// close different numbers of brackets, the first counts. Brackets that are nested more than 65,536 deep are counted,
/// no more: what is in them is in the last one above.
class Brackets {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// `tokens` has to outlive the object.
  explicit Brackets(const TokenList& tokens);

  /// The closing bracket of an opening one; kNone where there is none, and for any other token.
  [[nodiscard]] std::uint32_t partner(std::size_t token) const noexcept { return partner_[token]; }
  /// The innermost open `{` around a token; kNone outside of all.
  [[nodiscard]] std::uint32_t braceAround(std::size_t token) const noexcept {
    return brace_[token] == kNone ? kNone : braces_[brace_[token]].token;
  }
  /// The innermost open bracket of any sort around a token.
  [[nodiscard]] std::uint32_t bracketAround(std::size_t token) const noexcept { return outer_[token]; }
  /// The name of the function around a token, as its definition has it, behind the names of the classes around it;
  /// empty outside of functions.
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
  /// Where the walk is: all of it is taken back when another branch begins.
  struct State {
    std::uint32_t bracket = kNone;
    std::uint32_t brace = kNone;  ///< as an index of braces
    std::size_t declaration = 0;  ///< the first token behind the last `;`, `{` or `}`
    std::uint32_t depth = 0;      ///< how many brackets are open
    std::uint32_t deeper = 0;     ///< how many are open beyond the greatest depth
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
