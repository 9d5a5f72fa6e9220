#include "MarkerCalls.h"

#include <algorithm>
#include <array>

#include "Lines.h"

namespace kelvar_sources {

namespace {

constexpr std::size_t kMostTemplateTokens = 400;

/// The token after `<...>`; nothing if these are no template arguments.
std::optional<std::size_t> behindTemplate(const TokenList& list, const Brackets& brackets, std::size_t from) {
  int depth = 0;
  const std::size_t last = std::min(list.tokens.size(), from + kMostTemplateTokens);
  for (std::size_t i = from; i < last; ++i) {
    const Token& token = list.tokens[i];
    if (token.is('<')) ++depth;
    if (token.is('>') && --depth == 0) return i + 1;
    if (token.is(';') || token.is('{') || token.is('}')) return {};
    if (token.is('(') && brackets.partner(i) != Brackets::kNone) i = brackets.partner(i);
  }
  return {};
}

/// Words that may come before an expression. Any other word before a name makes it a declaration.
bool mayComeBefore(std::string_view word) {
  constexpr std::array<std::string_view, 8> kWords{"return", "else", "do",      "co_return",
                                                   "case",   "call", "default", "co_await"};
  return std::find(kWords.begin(), kWords.end(), word) != kWords.end();
}

}  // namespace

NamedCall callAt(const TokenList& list, const Brackets& brackets, std::size_t name) {
  NamedCall call{.first = name, .name = name, .brackets = {}};
  while (call.first >= 2 && list.tokens[call.first - 1].is(':') && list.tokens[call.first - 2].is(':')) {
    call.first -= 2;
    if (call.first == 0 || list.tokens[call.first - 1].kind != TokenKind::word) break;
    if (mayComeBefore(list.text(call.first - 1))) break;
    --call.first;
  }
  std::size_t behind = name + 1;
  if (behind < list.tokens.size() && list.tokens[behind].is('<')) {
    behind = behindTemplate(list, brackets, behind).value_or(list.tokens.size());
  }
  if (behind < list.tokens.size() && list.tokens[behind].is('(')) call.brackets = behind;
  return call;
}

bool isNamed(const TokenList& list, const NamedCall& call, std::string_view pattern) {
  const Token& first = list.tokens[call.first];
  const Token& last = list.tokens[call.name];
  std::string_view name = list.source.substr(first.offset, last.offset + last.length - first.offset);
  std::string plain;
  if (name.size() != pattern.size() && name.find_first_of(" \t\n") != std::string_view::npos) {
    plain = withoutBlanks(name);
    name = plain;
  }
  const bool qualified = pattern.find(':') != std::string_view::npos;
  if (!qualified && name.starts_with("::")) name.remove_prefix(2);
  if (name != pattern && !(qualified && name.ends_with(pattern) && name[name.size() - pattern.size() - 1] == ':')) {
    return false;
  }
  if (call.first == 0) return true;
  const Token& before = list.tokens[call.first - 1];
  if (before.is('.') || (before.is('>') && call.first > 1 && list.tokens[call.first - 2].is('-'))) return false;
  return before.kind != TokenKind::word || qualified || mayComeBefore(list.text(before));
}

std::string argumentOf(const TokenList& list, const Brackets& brackets, const NamedCall& call, int number,
                       bool literalOnly) {
  if (!call.brackets) return {};
  const std::size_t end = std::min<std::size_t>(brackets.partner(*call.brackets), list.tokens.size());
  int at = 1;
  std::string literal;
  std::string name;
  bool onlyLiterals = true;
  bool onlyNames = true;
  for (std::size_t i = *call.brackets + 1; i < end && at <= number; ++i) {
    const Token& token = list.tokens[i];
    if (token.is(',')) {
      ++at;
      continue;
    }
    const bool open = token.is('(') || token.is('[') || token.is('{');
    if (at == number && token.kind != TokenKind::conditional) {
      const bool text = token.kind == TokenKind::text;
      const bool part = token.kind == TokenKind::word || token.is(':') || token.is('.');
      onlyLiterals = onlyLiterals && text;
      onlyNames = onlyNames && part;
      if (text) literal += literalValue(list.text(token));
      if (part) name += list.text(token);
    }
    if (open) i = std::min<std::size_t>(brackets.partner(i), end);
  }
  if (onlyLiterals) return literal;
  return onlyNames && !literalOnly ? withoutBlanks(name) : std::string();
}

std::string literalValue(std::string_view quoted) {
  const std::size_t open = quoted.find('"');
  if (open == std::string_view::npos) return {};
  const bool raw = open > 0 && quoted[open - 1] == 'R';
  std::string_view inside = quoted.substr(open + 1);
  if (raw) {
    const std::size_t begin = inside.find('(');
    const std::size_t end = inside.rfind(')');
    if (begin == std::string_view::npos || end == std::string_view::npos || end < begin) return {};
    return withSingleBlanks(inside.substr(begin + 1, end - begin - 1));
  }
  if (inside.ends_with('"')) inside.remove_suffix(1);
  std::string value;
  for (std::size_t i = 0; i < inside.size(); ++i) {
    if (inside[i] == '\\' && i + 1 < inside.size() && (inside[i + 1] == '"' || inside[i + 1] == '\\')) ++i;
    value += inside[i];
  }
  return withSingleBlanks(value);
}

}  // namespace kelvar_sources
