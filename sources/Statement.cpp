#include "Statement.h"

#include <string_view>
#include <vector>

namespace kelvar_sources {

namespace {

/// A statement that may continue after the statement inside it.
enum class Pending : char { ifBranch, doLoop };

class StatementReader {
 public:
  StatementReader(const TokenList& list, const Brackets& brackets, std::size_t from, std::uint32_t branch)
      : list_(list), brackets_(brackets), at_(from), branch_(branch) {}

  std::optional<std::size_t> read() {
    while (true) {
      if (!readHead()) return {};
      if (!goesOn()) return last_;
    }
  }

 private:
  /// Goes to the next token of this branch, which may be the current one; false at the end.
  bool toCode() {
    while (at_ < list_.tokens.size()) {
      const Token& token = list_.tokens[at_];
      const bool code =
          token.kind != TokenKind::pragma && token.kind != TokenKind::remark && token.kind != TokenKind::conditional;
      if (code && list_.sees(branch_, token.branch)) return true;
      ++at_;
    }
    return false;
  }

  [[nodiscard]] std::string_view word() const {
    return list_.tokens[at_].kind == TokenKind::word ? list_.text(at_) : std::string_view();
  }

  bool overBrackets() {
    const std::uint32_t closing = brackets_.partner(at_);
    if (closing == Brackets::kNone || closing < at_) return false;
    last_ = closing;
    at_ = std::size_t{closing} + 1;
    return true;
  }

  /// Skips `for (...)` and the like down to the innermost statement, and that too.
  bool readHead() {
    while (toCode()) {
      const std::string_view keyword = word();
      if (list_.tokens[at_].is('{')) return overBrackets();
      if (list_.tokens[at_].is('}')) return false;
      if (keyword == "do") {
        pending_.push_back(Pending::doLoop);
        ++at_;
      } else if (keyword == "try" || keyword == "else") {
        ++at_;
      } else if (keyword == "for" || keyword == "while" || keyword == "if" || keyword == "switch" ||
                 keyword == "catch") {
        if (keyword == "if") pending_.push_back(Pending::ifBranch);
        if (!overCondition()) return false;
      } else {
        return readSimple();
      }
    }
    return false;
  }

  /// Skips a keyword, a `constexpr` after it, and its brackets.
  bool overCondition() {
    ++at_;
    while (toCode() && !word().empty()) ++at_;
    return toCode() && list_.tokens[at_].is('(') && overBrackets();
  }

  /// Skips up to a `;`, or `NAME(...) { ... }`, a loop made by a macro.
  bool readSimple() {
    bool onlyCall = !word().empty();
    std::size_t groups = 0;
    for (; toCode(); ++at_) {
      const Token& token = list_.tokens[at_];
      if (token.is(';')) {
        last_ = at_++;
        return true;
      }
      if (token.is('}') || token.is(')') || token.is(']')) return false;
      if (token.is('(') || token.is('[') || token.is('{')) {
        const bool block = token.is('{');
        if (!overBrackets()) return false;
        if (block && onlyCall && groups == 1) return true;
        ++groups;
        --at_;
      } else if (groups > 0 || token.kind != TokenKind::word) {
        onlyCall = onlyCall && groups == 0 && token.is(':');
      }
    }
    return false;
  }

  /// Whether the statement so far continues.
  bool goesOn() {
    while (!pending_.empty() || isHandler()) {
      if (pending_.empty()) return true;
      const Pending pending = pending_.back();
      pending_.pop_back();
      if (pending == Pending::ifBranch) {
        const std::size_t before = at_;
        if (toCode() && word() == "else") return true;
        at_ = before;
      } else if (!overWhile()) {
        return false;
      }
    }
    return false;
  }

  bool isHandler() {
    const std::size_t before = at_;
    const bool handler = toCode() && word() == "catch";
    if (!handler) at_ = before;
    return handler;
  }

  /// The end of a `do` loop.
  bool overWhile() {
    if (!toCode() || word() != "while" || !overCondition()) return false;
    if (toCode() && list_.tokens[at_].is(';')) last_ = at_++;
    return true;
  }

  const TokenList& list_;
  const Brackets& brackets_;
  std::size_t at_;
  std::uint32_t branch_;
  std::size_t last_ = 0;
  std::vector<Pending> pending_;
};

}  // namespace

std::optional<std::size_t> statementEnd(const TokenList& list, const Brackets& brackets, std::size_t from,
                                        std::uint32_t branch) {
  return StatementReader(list, brackets, from, branch).read();
}

}  // namespace kelvar_sources
