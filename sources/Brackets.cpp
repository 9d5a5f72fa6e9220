// Open brackets form a chain: each token stores the innermost open bracket before it. So the state at an `#if` is a few
// numbers, and restoring it at `#else` costs nothing, however deep the code is nested.
#include "Brackets.h"

#include <algorithm>
#include <utility>

#include "Declaration.h"

namespace kelvar_sources {

namespace {

/// No real code is nested so deep. Bounds the memory: a file of braces alone would take gigabytes.
constexpr std::uint32_t kMostDepth = 65536;

char closingOf(char open) {
  return open == '(' ? ')' : open == '[' ? ']' : '}';
}

}  // namespace

Brackets::Brackets(const TokenList& tokens)
    : list_(tokens),
      partner_(tokens.tokens.size(), kNone),
      outer_(tokens.tokens.size(), kNone),
      brace_(tokens.tokens.size(), kNone) {
  // Reserved at once: a vector that grows is in memory twice meanwhile.
  braces_.reserve(static_cast<std::size_t>(
      std::count_if(tokens.tokens.begin(), tokens.tokens.end(), [](const Token& token) { return token.is('{'); })));
  for (std::size_t i = 0; i < tokens.tokens.size(); ++i) take(i);
}

void Brackets::take(std::size_t index) {
  const Token& token = list_.tokens[index];
  outer_[index] = state_.bracket;
  brace_[index] = state_.brace;
  if (token.kind == TokenKind::conditional) return takeConditional(token.mark, index);
  if (token.kind == TokenKind::pragma && state_.declaration == index) state_.declaration = index + 1;
  if (token.kind != TokenKind::punctuation) return;
  switch (token.mark) {
    case '(':
    case '[':
    case '{':
      return open(index, token.mark);
    case ')':
    case ']':
    case '}':
      return close(index, token.mark);
    case ';':
      if (state_.bracket == kNone || list_.tokens[state_.bracket].is('{')) state_.declaration = index + 1;
      return;
    default:
      return;
  }
}

void Brackets::takeConditional(char mark, std::size_t index) {
  if (state_.declaration == index) state_.declaration = index + 1;
  if (mark == kBranchesBegin) {
    groups_.push_back({.before = state_, .afterFirst = {}});
  } else if (groups_.empty()) {
    return;
  } else if (mark == kOtherBranch) {
    Group& group = groups_.back();
    if (!group.other) group.afterFirst = state_;
    group.other = true;
    state_ = group.before;
    // If another branch begins the declaration again, it begins there.
    state_.declaration = index + 1;
  } else {
    if (groups_.back().other) state_ = groups_.back().afterFirst;
    groups_.pop_back();
  }
}

void Brackets::open(std::size_t index, char mark) {
  if (state_.depth == kMostDepth) {
    ++state_.deeper;
    return;
  }
  ++state_.depth;
  if (mark == '{') {
    const Brace brace = described(index);
    state_.brace = static_cast<std::uint32_t>(braces_.size());
    braces_.push_back(brace);
    state_.declaration = index + 1;
  }
  state_.bracket = static_cast<std::uint32_t>(index);
}

void Brackets::close(std::size_t index, char mark) {
  if (state_.deeper > 0) {
    --state_.deeper;
    return;
  }
  std::uint32_t opened = state_.bracket;
  std::uint32_t closed = 1;
  // A closing brace also closes everything left open inside; other brackets close nothing outside of their brace.
  while (opened != kNone && closingOf(list_.tokens[opened].mark) != mark) {
    if (list_.tokens[opened].is('{')) return;
    opened = outer_[opened];
    ++closed;
  }
  if (mark == '}') state_.declaration = index + 1;
  if (opened == kNone) return;
  partner_[opened] = static_cast<std::uint32_t>(index);
  state_.bracket = outer_[opened];
  state_.depth -= closed;
  if (mark != '}') return;
  const Brace& brace = braces_[state_.brace];  // the innermost one that is open
  state_.brace = brace.outer;
  if (brace.role == Role::initialiser) state_.declaration = brace.declaration;  // the constructor goes on
}

bool Brackets::inFunction() const noexcept {
  return state_.brace != kNone && braces_[state_.brace].function != kNone;
}

/// Inside a function, functions can only be defined in a class.
Brackets::Brace Brackets::described(std::size_t index) {
  Brace brace{.token = static_cast<std::uint32_t>(index), .outer = state_.brace};
  brace.function = state_.brace == kNone ? kNone : braces_[state_.brace].function;
  const bool inBrackets = state_.bracket != kNone && !list_.tokens[state_.bracket].is('{');
  if (inBrackets || (state_.brace != kNone && braces_[state_.brace].role == Role::block && !inFunction())) return brace;
  if (inFunction() && braces_[state_.brace].role != Role::scope) return brace;
  Definition definition = definitionIn(list_, partner_, state_.declaration, index);
  if (definition.what == Definition::What::nothing) {
    // Without a name it may be `extern "C" {`, whose content counts as if it were outside.
    const bool linkage = index > 0 && list_.tokens[index - 1].kind == TokenKind::text;
    brace.role = linkage ? Role::scope : Role::block;
    return brace;
  }
  if (definition.what == Definition::What::initialiser) {
    brace.role = Role::initialiser;
    brace.declaration = static_cast<std::uint32_t>(state_.declaration);
    return brace;
  }
  if (!definition.name.empty()) {
    brace.name = static_cast<std::uint32_t>(names_.size());
    names_.push_back(std::move(definition.name));
  }
  brace.role = definition.what == Definition::What::scope ? Role::scope : Role::function;
  if (brace.role == Role::function) brace.function = static_cast<std::uint32_t>(braces_.size());
  return brace;
}

std::string Brackets::nameOf(const Brace& brace) const {
  return brace.name == kNone ? std::string() : names_[brace.name];
}

std::string Brackets::functionAround(std::size_t token) const {
  if (brace_[token] == kNone) return {};
  std::uint32_t at = braces_[brace_[token]].function;
  if (at == kNone) return {};
  std::string name = nameOf(braces_[at]);
  constexpr int kMostOuterNames = 8;
  int names = 0;
  for (at = braces_[at].outer; at != kNone && braces_[at].role == Role::scope && names < kMostOuterNames; ++names) {
    if (braces_[at].name != kNone) name.insert(0, nameOf(braces_[at]) + "::");
    at = braces_[at].outer;
  }
  return name;
}

}  // namespace kelvar_sources
