#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Token.h"

namespace kelvar_sources {

/// Follows `#if`, `#else` and `#endif`. A branch whose condition is 0, and the branches behind one whose condition is
/// 1, are dead. Of the others the first counts as if it were always there; each further one gets a branch number.
class Conditionals {
 public:
  explicit Conditionals(TokenList& out) : out_(out) { out_.outerBranch.assign(1, 0); }

  /// Takes a directive of this name if it is a conditional; answers whether it is one. `rest` is what follows the name.
  bool take(std::string_view name, std::string_view rest, std::uint32_t offset);

  /// Whether the code here is left out for certain.
  [[nodiscard]] bool dead() const noexcept { return deadDepth_ > 0; }
  [[nodiscard]] std::uint32_t branch() const noexcept { return branch_; }

 private:
  enum class Condition { no, yes, unknown };
  struct Group {
    std::uint32_t outer = 0;
    bool hadLive = false;  ///< one of its branches counts already
    bool decided = false;  ///< one of its branches is taken for certain: the rest is dead
    bool dead = false;     ///< the branch that is open
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
