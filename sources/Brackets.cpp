// Open brackets form a chain: each token keeps the innermost one before it. So the state at an `#if` is a few numbers,
// and going back to it at `#else` costs nothing, however deep the code is nested.
#include "Brackets.h"

#include <algorithm>
#include <array>

#include "Lines.h"

namespace kelvar_sources {

namespace {

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

char closingOf(char open) {
  return open == '(' ? ')' : open == '[' ? ']' : '}';
}

/// What a declaration up to its `{` defines.
struct Definition {
  enum class What { nothing, function, scope, initialiser } what = What::nothing;
  std::string name;
};

/// Reads the tokens of one declaration, in one pass.
class DeclarationReader {
 public:
  DeclarationReader(const TokenList& list, const std::vector<std::uint32_t>& partner)
      : list_(list), partner_(partner) {}

  Definition read(std::size_t first, std::size_t brace) const {
    bool scope = false;
    bool isNamespace = false;  // has no name here: code moves into and out of namespaces as it is
    std::size_t scopeName = brace;
    for (std::size_t i = first; i < brace; ++i) {
      const Token& token = list_.tokens[i];
      if (token.kind == TokenKind::word) {
        const std::string_view word = list_.text(token);
        if (isOneOf(word, {"class", "struct", "union", "namespace", "enum"})) scope = true;
        if (word == "namespace") isNamespace = true;
        if (isOneOf(word, {"extern"})) continue;
        if (isOneOf(word, {"template"}) && i + 1 < brace && list_.tokens[i + 1].is('<')) {
          i = behindAngles(i + 1, brace) - 1;
          continue;
        }
        if (scope && !isOneOf(word, {"final", "class", "struct", "union", "namespace", "enum"})) scopeName = i;
        if (isOneOf(word, {"operator"})) return functionNamed(first, i, parametersBehind(i + 1, brace), brace);
      } else if (token.is('=')) {
        return {};
      } else if (token.is(':') && scope) {
        break;
      } else if (token.is('(')) {
        const bool named = i > first && list_.tokens[i - 1].kind == TokenKind::word && !isAttribute(i - 1);
        if (named && !scope && !isMacroBefore(first, i, brace))
          return functionNamed(first, nameBegin(first, i - 1), i, brace);
        if (partner_[i] == Brackets::kNone || partner_[i] >= brace) return {};
        i = partner_[i];
      }
    }
    const bool named = scopeName < brace && !isNamespace;
    if (scope) return {Definition::What::scope, named ? std::string(list_.text(scopeName)) : std::string()};
    return {};
  }

 private:
  /// Whether the brackets at `i` are those of a macro before the declaration proper, such as `API(int) f() {`.
  [[nodiscard]] bool isMacroBefore(std::size_t first, std::size_t i, std::size_t brace) const {
    if (i != first + 1 || partner_[i] >= brace || partner_[i] + 2 >= brace) return false;
    return list_.tokens[partner_[i] + 1].kind == TokenKind::word && list_.tokens[brace - 1].is(')');
  }

  /// Whether this brace initialises a member between a constructor's parameters and its body.
  [[nodiscard]] bool isMemberInitialiser(std::size_t parameters, std::size_t brace) const {
    const Token& before = list_.tokens[brace - 1];
    if (before.kind != TokenKind::word && !before.is('>')) return false;
    std::size_t i = partner_[parameters];
    if (i >= brace) return false;
    while (++i < brace && list_.tokens[i].kind == TokenKind::word) continue;  // const, noexcept
    return i + 1 < brace && list_.tokens[i].is(':') && !list_.tokens[i + 1].is(':');
  }

  [[nodiscard]] bool isAttribute(std::size_t i) const {
    return isOneOf(list_.text(i), {"__attribute__", "__declspec", "alignas", "decltype", "noexcept", "requires",
                                   "__launch_bounds__", "explicit", "throw"});
  }

  [[nodiscard]] std::size_t behindAngles(std::size_t i, std::size_t end) const {
    int depth = 0;
    for (; i < end; ++i) {
      if (list_.tokens[i].is('<')) ++depth;
      if (list_.tokens[i].is('>') && --depth == 0) return i + 1;
    }
    return end;
  }

  /// The parameters of an operator; those of `operator()` are the second brackets.
  [[nodiscard]] std::size_t parametersBehind(std::size_t i, std::size_t end) const {
    while (i < end && !list_.tokens[i].is('(')) ++i;
    if (i + 2 < end && partner_[i] == i + 1 && list_.tokens[i + 2].is('(')) return i + 2;
    return i;
  }

  /// Where the chain of `A::B<T>::~name` that ends with the word at `last` begins.
  [[nodiscard]] std::size_t nameBegin(std::size_t first, std::size_t last) const {
    std::size_t begin = last;
    if (begin > first && list_.tokens[begin - 1].is('~')) --begin;
    while (begin >= first + 3 && list_.tokens[begin - 1].is(':') && list_.tokens[begin - 2].is(':')) {
      std::size_t before = begin - 3;
      if (list_.tokens[before].is('>')) {
        int depth = 0;
        while (before > first) {
          if (list_.tokens[before].is('>')) ++depth;
          if (list_.tokens[before].is('<') && --depth == 0) break;
          --before;
        }
        if (before == first) break;
        --before;
      }
      if (list_.tokens[before].kind != TokenKind::word) break;
      begin = before;
    }
    return begin;
  }

  [[nodiscard]] Definition functionNamed(std::size_t first, std::size_t from, std::size_t parameters,
                                         std::size_t brace) const {
    if (parameters >= brace) return {};
    if (isMemberInitialiser(parameters, brace)) return {Definition::What::initialiser, {}};
    std::size_t end = parameters;
    // What looks like a call of a macro, such as TEST(Suite, Name), is told apart by what is in its brackets.
    const bool likeMacro = from == first && end == from + 1 && partner_[parameters] < brace;
    if (likeMacro && isUpper(list_.text(from))) end = partner_[parameters] + 1;
    const Token& last = list_.tokens[end - 1];
    const std::uint32_t begin = list_.tokens[from].offset;
    const std::string_view whole = list_.source.substr(begin, last.offset + last.length - begin);
    return {Definition::What::function, likeMacro ? withSingleBlanks(whole) : withoutBlanks(whole)};
  }

  static bool isUpper(std::string_view word) {
    return std::none_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  }

  const TokenList& list_;
  const std::vector<std::uint32_t>& partner_;
};

}  // namespace

Brackets::Brackets(const TokenList& tokens)
    : list_(tokens),
      partner_(tokens.tokens.size(), kNone),
      outer_(tokens.tokens.size(), kNone),
      brace_(tokens.tokens.size(), kNone),
      braceOfToken_(tokens.tokens.size(), kNone) {
  for (std::size_t i = 0; i < tokens.tokens.size(); ++i) take(i);
}

void Brackets::take(std::size_t index) {
  const Token& token = list_.tokens[index];
  outer_[index] = state_.bracket;
  brace_[index] = state_.brace == kNone ? kNone : braces_[state_.brace].token;
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
    // A declaration that another branch begins anew begins there.
    state_.declaration = index + 1;
  } else {
    if (groups_.back().other) state_ = groups_.back().afterFirst;
    groups_.pop_back();
  }
}

void Brackets::open(std::size_t index, char mark) {
  if (mark == '{') {
    Brace brace = described(index);
    braceOfToken_[index] = static_cast<std::uint32_t>(braces_.size());
    state_.brace = braceOfToken_[index];
    braces_.push_back(std::move(brace));
    state_.declaration = index + 1;
  }
  state_.bracket = static_cast<std::uint32_t>(index);
}

void Brackets::close(std::size_t index, char mark) {
  std::uint32_t opened = state_.bracket;
  // A brace also closes what was left open within it; the others close nothing beyond their brace.
  while (opened != kNone && closingOf(list_.tokens[opened].mark) != mark) {
    if (list_.tokens[opened].is('{')) return;
    opened = outer_[opened];
  }
  if (mark == '}') state_.declaration = index + 1;
  if (opened == kNone) return;
  partner_[opened] = static_cast<std::uint32_t>(index);
  state_.bracket = outer_[opened];
  if (mark != '}') return;
  const Brace& brace = braces_[braceOfToken_[opened]];
  state_.brace = brace.outer;
  if (brace.role == Role::initialiser) state_.declaration = brace.declaration;  // the constructor goes on
}

bool Brackets::inFunction() const noexcept {
  return state_.brace != kNone && braces_[state_.brace].function != kNone;
}

/// Within a function only a class opens a scope in which functions are defined.
Brackets::Brace Brackets::described(std::size_t index) const {
  Brace brace{.token = static_cast<std::uint32_t>(index), .outer = state_.brace, .name = {}};
  brace.function = state_.brace == kNone ? kNone : braces_[state_.brace].function;
  const bool inBrackets = state_.bracket != kNone && !list_.tokens[state_.bracket].is('{');
  if (inBrackets || (state_.brace != kNone && braces_[state_.brace].role == Role::block && !inFunction())) return brace;
  if (inFunction() && braces_[state_.brace].role != Role::scope) return brace;
  Definition definition = DeclarationReader(list_, partner_).read(state_.declaration, index);
  if (definition.what == Definition::What::nothing) {
    // Without a name, it may be `extern "C" {`: what lies in it is as if it were outside.
    const bool linkage = index > 0 && list_.tokens[index - 1].kind == TokenKind::text;
    brace.role = linkage ? Role::scope : Role::block;
    return brace;
  }
  if (definition.what == Definition::What::initialiser) {
    brace.role = Role::initialiser;
    brace.declaration = state_.declaration;
    return brace;
  }
  brace.name = std::move(definition.name);
  brace.role = definition.what == Definition::What::scope ? Role::scope : Role::function;
  if (brace.role == Role::function) brace.function = static_cast<std::uint32_t>(braces_.size());
  return brace;
}

std::string Brackets::functionAround(std::size_t token) const {
  if (brace_[token] == kNone) return {};
  std::uint32_t at = braces_[braceOfToken_[brace_[token]]].function;
  if (at == kNone) return {};
  std::string name = braces_[at].name;
  constexpr int kMostOuterNames = 8;
  int names = 0;
  for (at = braces_[at].outer; at != kNone && braces_[at].role == Role::scope && names < kMostOuterNames; ++names) {
    if (!braces_[at].name.empty()) name.insert(0, braces_[at].name + "::");
    at = braces_[at].outer;
  }
  return name;
}

}  // namespace kelvar_sources
