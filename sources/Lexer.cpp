// One pass over the bytes. A table gives the class of each byte; words and blanks are skipped in tight loops. Malformed
// tokens end with their line or with the text.
#include <algorithm>
#include <array>
#include <cstring>

#include "Conditionals.h"
#include "Lines.h"
#include "Token.h"

namespace kelvar_sources {

namespace {

enum class Class : std::uint8_t { other, blank, lineEnd, word, digit, quote, apostrophe, slash, hash, backslash };

constexpr std::array<Class, 256> classes() {
  std::array<Class, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const char c = static_cast<char>(i);
    if (isWordByte(c)) table[i] = Class::word;
    if (isDigit(c)) table[i] = Class::digit;
    if (isBlank(c)) table[i] = Class::blank;
  }
  table['$'] = Class::word;
  table['\n'] = Class::lineEnd;
  table['"'] = Class::quote;
  table['\''] = Class::apostrophe;
  table['/'] = Class::slash;
  table['#'] = Class::hash;
  table['\\'] = Class::backslash;
  return table;
}
constexpr std::array<Class, 256> kClasses = classes();

constexpr Class classOf(char c) noexcept {
  return kClasses[static_cast<unsigned char>(c)];
}

class Lexer {
 public:
  explicit Lexer(std::string_view source) : source_(source), conditionals_(out_) {
    out_.source = source;
    out_.tokens.reserve(source.size() / 6);
  }

  TokenList run() {
    while (at_ < source_.size()) step();
    return std::move(out_);
  }

 private:
  [[nodiscard]] char peek(std::size_t ahead = 0) const noexcept {
    return at_ + ahead < source_.size() ? source_[at_ + ahead] : '\0';
  }

  void emit(TokenKind kind, std::size_t from, char mark = 0) {
    out_.tokens.push_back({.offset = static_cast<std::uint32_t>(from),
                           .length = static_cast<std::uint32_t>(at_ - from),
                           .branch = conditionals_.branch(),
                           .kind = kind,
                           .mark = mark});
    lineIsFresh_ = false;
  }

  void step() {
    switch (classOf(source_[at_])) {
      case Class::blank:
        ++at_;
        return;
      case Class::lineEnd:
        ++at_;
        lineIsFresh_ = true;
        return;
      case Class::word:
        return word();
      case Class::digit:
        return number();
      case Class::quote:
        return text(at_);
      case Class::apostrophe:
        return character();
      case Class::slash:
        return slash();
      case Class::hash:
        return lineIsFresh_ ? directive() : punctuation();
      case Class::backslash:  // a line splice, or a stray byte
        ++at_;
        if (peek() == '\r') ++at_;
        if (peek() == '\n') ++at_;
        return;
      case Class::other:
        if (source_[at_] == '.' && isDigit(peek(1))) return number();
        return punctuation();
    }
  }

  void punctuation() {
    const char mark = source_[at_++];
    emit(TokenKind::punctuation, at_ - 1, mark);
  }

  void word() {
    const std::size_t from = at_;
    while (at_ < source_.size() && (classOf(source_[at_]) == Class::word || classOf(source_[at_]) == Class::digit)) {
      ++at_;
    }
    const std::size_t size = at_ - from;
    if (size > 3 || (peek() != '"' && peek() != '\'')) return emit(TokenKind::word, from);
    const std::string_view prefix = source_.substr(from, size);
    if (peek() == '"' && prefix.back() == 'R') return rawText(from);
    if (peek() == '"') return text(from);
    emit(TokenKind::word, from);
  }

  /// `1'000`, `0x1p-3` and `1.5e+3f` are one number each.
  void number() {
    const std::size_t from = at_;
    while (at_ < source_.size()) {
      const char c = source_[at_];
      const bool sign = (c == '+' || c == '-') && at_ > from && std::strchr("eEpP", source_[at_ - 1]) != nullptr;
      if (!isWordByte(c) && c != '.' && !sign && !(c == '\'' && isWordByte(peek(1)))) break;
      ++at_;
    }
    emit(TokenKind::number, from);
  }

  /// Ends with the line if the closing quote is missing.
  void quoted(char quote) {
    ++at_;
    while (at_ < source_.size() && source_[at_] != quote && source_[at_] != '\n') {
      at_ += source_[at_] == '\\' && at_ + 1 < source_.size() ? 2U : 1U;
    }
    if (peek() == quote) ++at_;
  }

  void text(std::size_t from) {
    quoted('"');
    emit(TokenKind::text, from);
  }

  void character() {
    const std::size_t from = at_;
    quoted('\'');
    emit(TokenKind::character, from);
  }

  void rawText(std::size_t from) {
    constexpr std::size_t kLongestDelimiter = 16;
    const std::size_t open = source_.substr(0, std::min(source_.size(), at_ + kLongestDelimiter + 2)).find('(', at_);
    if (open == std::string_view::npos) return text(from);
    std::string end = ")";
    end += source_.substr(at_ + 1, open - at_ - 1);
    end += '"';
    const std::size_t close = source_.find(end, open);
    at_ = close == std::string_view::npos ? source_.size() : close + end.size();
    emit(TokenKind::text, from);
  }

  void slash() {
    if (peek(1) != '/' && peek(1) != '*') return punctuation();
    const bool toLineEnd = peek(1) == '/';
    at_ += 2;
    const std::size_t from = at_;
    const std::size_t end = toLineEnd ? lineCommentEnd() : blockCommentEnd();
    const bool fresh = lineIsFresh_;
    remark(from, end);
    at_ = std::min(source_.size(), toLineEnd ? end : end + 2);
    lineIsFresh_ = fresh;
  }

  [[nodiscard]] std::size_t lineCommentEnd() const {
    std::size_t end = at_;
    while (true) {
      end = std::min(source_.find('\n', end), source_.size());
      std::size_t last = end;
      if (last > at_ && source_[last - 1] == '\r') --last;
      if (end == source_.size() || last == at_ || source_[last - 1] != '\\') return end;
      ++end;
    }
  }

  [[nodiscard]] std::size_t blockCommentEnd() const { return std::min(source_.find("*/", at_), source_.size()); }

  void remark(std::size_t from, std::size_t end) {
    constexpr std::string_view kName = "kelvar:";
    while (from < end && isBlank(source_[from])) ++from;
    if (!source_.substr(from, end - from).starts_with(kName)) return;
    at_ = end;
    emit(TokenKind::remark, from + kName.size());
  }

  /// From here to the end of the logical line, after line splices and multi-line comments.
  [[nodiscard]] std::size_t directiveEnd(std::size_t from, std::size_t& codeEnd) const {
    std::size_t at = from;
    codeEnd = std::string_view::npos;
    for (; at < source_.size() && source_[at] != '\n'; ++at) {
      if (source_[at] == '\\') {
        const std::size_t next = at + 1 < source_.size() && source_[at + 1] == '\r' ? at + 2 : at + 1;
        if (next < source_.size() && source_[next] == '\n') at = next;
      } else if (source_[at] == '"') {
        const std::size_t close = source_.find_first_of("\"\n", at + 1);
        if (close != std::string_view::npos && source_[close] == '"') at = close;
      } else if (source_.substr(at, 2) == "//") {
        codeEnd = std::min(codeEnd, at);
      } else if (source_.substr(at, 2) == "/*" && codeEnd == std::string_view::npos) {
        const std::size_t close = source_.find("*/", at + 2);
        if (source_.substr(at, close - at).find('\n') != std::string_view::npos) codeEnd = at;
        if (close == std::string_view::npos) return source_.size();
        at = close + 1;
      }
    }
    codeEnd = std::min(codeEnd, at);
    return at;
  }

  void directive() {
    const std::size_t from = at_++;
    while (peek() == ' ' || peek() == '\t') ++at_;
    const std::size_t name = at_;
    while (isWordByte(peek())) ++at_;
    const std::string_view named = source_.substr(name, at_ - name);
    std::size_t codeEnd = 0;
    const std::size_t end = directiveEnd(at_, codeEnd);
    const std::string_view rest = source_.substr(at_, codeEnd - at_);
    if (!conditionals_.take(named, rest, static_cast<std::uint32_t>(from)) && named == "pragma") {
      at_ = codeEnd;
      emit(TokenKind::pragma, from);
    }
    at_ = end;
    if (conditionals_.dead()) skipDead();
  }

  /// Skips lines that are certainly not compiled, looking only at directives.
  void skipDead() {
    while (conditionals_.dead() && at_ < source_.size()) {
      const std::size_t lineEnd = source_.find('\n', at_);
      if (lineEnd == std::string_view::npos) {
        at_ = source_.size();
        return;
      }
      at_ = lineEnd + 1;
      while (peek() == ' ' || peek() == '\t') ++at_;
      if (peek() != '#') continue;
      const std::size_t from = at_++;
      while (peek() == ' ' || peek() == '\t') ++at_;
      const std::size_t name = at_;
      while (isWordByte(peek())) ++at_;
      std::size_t codeEnd = 0;
      const std::size_t end = directiveEnd(at_, codeEnd);
      conditionals_.take(source_.substr(name, at_ - name), source_.substr(at_, codeEnd - at_),
                         static_cast<std::uint32_t>(from));
      at_ = end;
    }
  }

  std::string_view source_;
  TokenList out_;
  Conditionals conditionals_;
  std::size_t at_ = 0;
  bool lineIsFresh_ = true;  // only blanks and comments on the line so far
};

}  // namespace

TokenList lexed(std::string_view source) {
  return Lexer(source).run();
}

}  // namespace kelvar_sources
