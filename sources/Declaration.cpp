#include "Declaration.h"

#include <algorithm>
#include <initializer_list>

#include "Brackets.h"
#include "Lines.h"

namespace kelvar_sources {

namespace {

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// Reads the tokens of one declaration, in one pass.
class DeclarationReader {
 public:
  DeclarationReader(const TokenList& list, const std::vector<std::uint32_t>& partner)
      : list_(list), partner_(partner) {}

  Definition read(std::size_t first, std::size_t brace) const {
    bool scope = false;
    bool isNamespace = false;  // its name is not used: code is often moved in and out of namespaces
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
    // Macro calls such as TEST(Suite, Name) are distinguished by their arguments.
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

Definition definitionIn(const TokenList& list, const std::vector<std::uint32_t>& partner, std::size_t first,
                        std::size_t brace) {
  return DeclarationReader(list, partner).read(first, brace);
}

}  // namespace kelvar_sources
