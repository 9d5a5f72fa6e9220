#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Token.h"

namespace kelvar_sources {

/// Follows `#if`, `#else` and `#endif`. A branch with the condition 0, and branches after one with the condition 1, are
/// dead. The first of the other branches counts as if it were unconditional; each further one gets a branch number.
class Conditionals {
 public:
  explicit Conditionals(TokenList& out) : out_(out) { out_.outerBranch.assign(1, 0); }

  /// Handles the directive if it is a conditional, and returns whether it is. `rest` is the text after its name.
  bool take(std::string_view name, std::string_view rest, std::uint32_t offset);

  /// Whether the code here is certainly not compiled.
  [[nodiscard]] bool dead() const noexcept { return deadDepth_ > 0; }
  [[nodiscard]] std::uint32_t branch() const noexcept { return branch_; }

 private:
  enum class Condition { no, yes, unknown };
  struct Group {
    std::uint32_t outer = 0;
    bool hadLive = false;  ///< a branch was not dead
    bool decided = false;  ///< a branch is certainly compiled, so the following ones are dead
    bool dead = false;     ///< the current branch is dead
  };

  static Condition conditionOf(std::string_view name, std::string_view rest);
  void open(Condition condition, std::uint32_t offset);
  void next(Condition condition, std::uint32_t offset);
  void close(std::uint32_t offset);
  void enter(Group& group, Condition condition, std::uint32_t offset);
  void emit(char mark, std::uint32_t offset);

  TokenList& out_;
  std::vector<Group> groups_;
  std::uint32_t branch_ = 0;
  std::uint32_t deadDepth_ = 0;
};

}  // namespace kelvar_sources
