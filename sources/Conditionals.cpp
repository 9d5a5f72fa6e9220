#include "Conditionals.h"

#include "Lines.h"

namespace kelvar_sources {

namespace {

std::string_view firstWord(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  std::size_t size = 0;
  while (size < text.size() && !isBlank(text[size])) ++size;
  return text.substr(0, size);
}

}  // namespace

bool Conditionals::take(std::string_view name, std::string_view rest, std::uint32_t offset) {
  if (name == "if" || name == "ifdef" || name == "ifndef") {
    open(conditionOf(name, rest), offset);
  } else if (name == "elif" || name == "elifdef" || name == "elifndef" || name == "else") {
    next(conditionOf(name, rest), offset);
  } else if (name == "endif") {
    close(offset);
  } else {
    return false;
  }
  return true;
}

Conditionals::Condition Conditionals::conditionOf(std::string_view name, std::string_view rest) {
  if (name != "if" && name != "elif") return Condition::unknown;
  const std::string_view word = firstWord(rest);
  // `0 || X` depends on X.
  const std::string_view behind =
      firstWord(rest.substr(static_cast<std::size_t>(word.data() - rest.data()) + word.size()));
  if (!behind.empty() && !behind.starts_with("/*") && !behind.starts_with("//")) return Condition::unknown;
  if (word == "0" || word == "false") return Condition::no;
  return word == "1" || word == "true" ? Condition::yes : Condition::unknown;
}

void Conditionals::open(Condition condition, std::uint32_t offset) {
  if (dead()) {
    groups_.push_back({.outer = branch_, .decided = true, .dead = true});
    ++deadDepth_;
    return;
  }
  groups_.push_back({.outer = branch_});
  emit(kBranchesBegin, offset);
  enter(groups_.back(), condition, offset);
}

void Conditionals::next(Condition condition, std::uint32_t offset) {
  if (groups_.empty()) return;
  Group& group = groups_.back();
  if (group.dead) --deadDepth_;
  group.dead = false;
  branch_ = group.outer;
  enter(group, condition, offset);
}

void Conditionals::close(std::uint32_t offset) {
  if (groups_.empty()) return;
  const Group group = groups_.back();
  groups_.pop_back();
  if (group.dead) --deadDepth_;
  branch_ = group.outer;
  if (!dead()) emit(kBranchesEnd, offset);
}

void Conditionals::enter(Group& group, Condition condition, std::uint32_t offset) {
  if (group.decided || condition == Condition::no) {
    group.dead = true;
    ++deadDepth_;
    return;
  }
  group.decided = condition == Condition::yes;
  if (!group.hadLive) {
    group.hadLive = true;
    return;
  }
  branch_ = static_cast<std::uint32_t>(out_.outerBranch.size());
  out_.outerBranch.push_back(group.outer);
  emit(kOtherBranch, offset);
}

void Conditionals::emit(char mark, std::uint32_t offset) {
  out_.tokens.push_back(
      {.offset = offset, .length = 0, .branch = branch_, .kind = TokenKind::conditional, .mark = mark});
}

}  // namespace kelvar_sources
