#include "Markers.h"

#include <algorithm>
#include <set>

#include "Brackets.h"
#include "Directive.h"
#include "MarkerCalls.h"
#include "MarkerRemark.h"
#include "RegionPairs.h"
#include "Statement.h"
#include "Surroundings.h"
#include "Token.h"

namespace kelvar_sources {

namespace {

constexpr const char* kRemarkEnd = "kelvar: end";

/// Finds the markers in the tokens of one file.
class MarkerFinder {
 public:
  MarkerFinder(const TokenList& list, const Lines& lines, const RuleSet& rules)
      : list_(list), brackets_(list), rules_(rules), around_(lines, significantLines(list, lines)) {
    found_.lines = lines.count();
  }

  FileSites run() {
    for (std::size_t i = 0; i < list_.tokens.size(); ++i) take(i);
    for (const RegionPairs::Pair& pair : pairs_.pairs()) endTokens_[pair.site] = pair.end;
    addEnds();
    return std::move(found_);
  }

  static std::vector<int> significantLines(const TokenList& list, const Lines& lines) {
    std::vector<int> significant;
    int line = 1;
    for (const Token& token : list.tokens) {
      while (line < lines.count() && lines.start(line + 1) <= token.offset) ++line;
      const bool code = token.kind == TokenKind::word || token.kind == TokenKind::number ||
                        token.kind == TokenKind::text || token.kind == TokenKind::pragma;
      if (code && (significant.empty() || significant.back() != line)) significant.push_back(line);
    }
    return significant;
  }

 private:
  static constexpr std::size_t kNoToken = static_cast<std::size_t>(-1);

  [[nodiscard]] const Lines& lines() const { return around_.lines(); }

  void take(std::size_t index) {
    const Token& token = list_.tokens[index];
    if (token.kind == TokenKind::pragma) return takePragma(index, list_.text(token).substr(1), index, index);
    if (token.kind == TokenKind::remark) return takeRemark(index);
    if (token.kind != TokenKind::word || !rules_.mayBegin(list_.source[token.offset])) {
      if (token.kind == TokenKind::word && list_.text(token) == "_Pragma") takePragmaOperator(index);
      return;
    }
    const std::string_view word = list_.text(token);
    if (word == "_Pragma") return takePragmaOperator(index);
    if (rules_.ends(word)) takeEndCall(index);
    if (!rules_.named(word).empty()) takeName(index);
  }

  void takePragmaOperator(std::size_t index) {
    if (index + 3 >= list_.tokens.size() || !list_.tokens[index + 1].is('(')) return;
    if (list_.tokens[index + 2].kind != TokenKind::text) return;
    takePragma(index, "pragma " + literalValue(list_.text(index + 2)), index + 3, index + 2);
  }

  /// `text` begins with the word pragma; `last` is the directive's last token, and its line ends where `shown` does.
  void takePragma(std::size_t index, std::string_view text, std::size_t last, std::size_t shown) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    text.remove_prefix(std::min(text.size(), std::string_view("pragma").size()));
    const Directive directive = directiveIn(text);
    if (rules_.directivesOf(directive.model).empty()) return;
    bool hasKind = false;
    for (const std::size_t rule : rulesFor(directive, rules_)) {
      if (!rules_.rule(rule).kind) continue;
      hasKind = true;
      FoundSite& site = addSite(rule, index, list_.tokens[shown]);
      if (rules_.rule(rule).label.from == LabelSource::From::brackets) site.anchor.label = directive.brackets;
      if (rules_.rule(rule).end.at != RegionEnd::At::statement) continue;
      if (const auto end = statementEnd(list_, brackets_, last + 1, list_.tokens[index].branch))
        endTokens_.back() = *end;
    }
    if (!hasKind) ++found_.kindless[directive.name()];
  }

  void takeRemark(std::size_t index) {
    const MarkerRemark remark = remarkIn(list_.text(index));
    if (remark.word == "end") {
      pairs_.end(kRemarkEnd, remark.label, index, brackets_.braceAround(index));
      return;
    }
    const std::vector<std::size_t>& rules = rules_.remarksNamed(remark.word);
    if (rules.empty()) ++found_.kindless["kelvar: " + remark.word];
    for (const std::size_t rule : rules) {
      FoundSite& site = addSite(rule, index, list_.tokens[index]);
      site.anchor.label = remark.label;
      endTokens_.back() = blockEnd(index);
      pairs_.begin(kRemarkEnd, remark.label, found_.sites.size() - 1, brackets_.braceAround(index));
    }
  }

  [[nodiscard]] std::size_t blockEnd(std::size_t index) const {
    const std::uint32_t brace = brackets_.braceAround(index);
    if (brace == Brackets::kNone || brackets_.partner(brace) == Brackets::kNone) return kNoToken;
    return brackets_.partner(brace);
  }

  void takeName(std::size_t index) {
    const NamedCall call = callAt(list_, brackets_, index);
    for (const std::size_t number : rules_.named(list_.text(index))) {
      const Rule& rule = rules_.rule(number);
      if (!isNamed(list_, call, rule.pattern)) continue;
      if (rule.form == Form::argument) {
        takeArgument(number, call);
      } else if (rule.form == Form::object || call.brackets) {
        takeCall(number, rule.form == Form::object ? objectAt(call) : call);
      }
    }
  }

  /// `TYPE variable(...)` and `TYPE{...}` have arguments like a call.
  [[nodiscard]] NamedCall objectAt(NamedCall call) const {
    std::size_t at = call.name + 1;
    if (at < list_.tokens.size() && list_.tokens[at].kind == TokenKind::word) ++at;
    if (at < list_.tokens.size() && (list_.tokens[at].is('(') || list_.tokens[at].is('{'))) call.brackets = at;
    return call;
  }

  /// The site is the call around the name.
  void takeArgument(std::size_t number, const NamedCall& argument) {
    const std::uint32_t open = brackets_.bracketAround(argument.first);
    if (open == Brackets::kNone || open == 0 || !list_.tokens[open].is('(')) return;
    if (list_.tokens[open - 1].kind != TokenKind::word) return;
    NamedCall call = callAt(list_, brackets_, open - 1);
    call.brackets = open;
    takeCall(number, call);
  }

  void takeCall(std::size_t number, const NamedCall& call) {
    const Rule& rule = rules_.rule(number);
    if (!rule.kind) {
      ++found_.kindless[rule.name];
      return;
    }
    FoundSite& site = addSite(number, call.first, list_.tokens[call.first]);
    if (rule.label.from == LabelSource::From::literal || rule.label.from == LabelSource::From::argument) {
      const bool literalOnly = rule.label.from == LabelSource::From::literal;
      site.anchor.label = argumentOf(list_, brackets_, call, rule.label.index, literalOnly);
    }
    switch (rule.end.at) {
      case RegionEnd::At::call:
        if (call.brackets && brackets_.partner(*call.brackets) != Brackets::kNone) {
          endTokens_.back() = brackets_.partner(*call.brackets);
        }
        return;
      case RegionEnd::At::block:
        endTokens_.back() = blockEnd(call.first);
        return;
      case RegionEnd::At::until:
        pairs_.begin(rule.end.name, site.anchor.label, found_.sites.size() - 1, brackets_.braceAround(call.first));
        return;
      case RegionEnd::At::handle:
        pairs_.begin(rule.end.name, argumentOf(list_, brackets_, call, 1, false), found_.sites.size() - 1,
                     brackets_.braceAround(call.first));
        return;
      case RegionEnd::At::statement:
        if (const auto end = statementEnd(list_, brackets_, call.first, list_.tokens[call.first].branch)) {
          endTokens_.back() = *end;
        }
        return;
      case RegionEnd::At::none:
        return;
    }
  }

  void takeEndCall(std::size_t index) {
    const NamedCall call = callAt(list_, brackets_, index);
    std::set<std::string> names;  // several rules may share one
    for (const std::size_t number : rules_.endedBy(list_.text(index))) {
      const std::string& name = rules_.rule(number).end.name;
      if (!isNamed(list_, call, name) || !names.insert(name).second) continue;
      pairs_.end(name, argumentOf(list_, brackets_, call, 1, false), index, brackets_.braceAround(index));
    }
  }

  FoundSite& addSite(std::size_t rule, std::size_t token, const Token& shown) {
    FoundSite& site = found_.sites.emplace_back();
    endTokens_.push_back(kNoToken);
    site.kind = *rules_.rule(rule).kind;
    const Token& first = list_.tokens[token];
    const bool remark = first.kind == TokenKind::remark;
    constexpr std::string_view kRemarkName = "kelvar:";
    const std::size_t offset = first.offset - (remark ? kRemarkName.size() : 0);
    site.line = lines().lineAt(offset);
    site.column = lines().columnAt(offset);
    site.anchor.rule = rules_.rule(rule).name;
    const int last = first.kind == TokenKind::pragma ? lines().lineAt(shown.offset + shown.length - 1) : site.line;
    describe(site, token, last);
    if (first.kind == TokenKind::pragma) site.anchor.text = withSingleBlanks(list_.text(first));
    return site;
  }

  void describe(FoundSite& site, std::size_t token, int lastLine) {
    site.anchor.text = withSingleBlanks(lines().line(site.line));
    site.anchor.function = withSingleBlanks(brackets_.functionAround(token));
    around_.describe(site.line, lastLine, site.anchor);
  }

  void addEnds() {
    const std::size_t markers = found_.sites.size();
    for (std::size_t i = 0; i < markers; ++i) {
      const std::optional<Kind> kind = endOf(found_.sites[i].kind);
      if (!kind || rules_.endOfRule(found_.sites[i].anchor.rule) == RegionEnd::At::none) continue;
      const std::size_t token = endTokens_[i];
      if (token == kNoToken) {
        found_.sites[i].unclosed = true;
        continue;
      }
      FoundSite end{.kind = *kind, .isEnd = true, .anchor = {}};
      const Token& last = list_.tokens[token];
      end.line = lines().lineAt(last.offset);
      end.column = lines().columnAt(last.offset);
      end.anchor.rule = found_.sites[i].anchor.rule;
      end.anchor.label = found_.sites[i].anchor.label;
      describe(end, token, end.line);
      found_.sites[i].end = static_cast<int>(found_.sites.size());
      found_.sites.push_back(std::move(end));
    }
  }

  const TokenList& list_;
  const Brackets brackets_;
  const RuleSet& rules_;
  const Surroundings around_;
  FileSites found_;
  std::vector<std::size_t> endTokens_;  // by site: where its region ends
  RegionPairs pairs_;
};

}  // namespace

FileSites markersIn(std::string_view source, const RuleSet& rules) {
  const TokenList list = lexed(source);
  const Lines lines(source);
  return MarkerFinder(list, lines, rules).run();
}

std::vector<FoundSite> codeLinesIn(std::string_view source) {
  const TokenList list = lexed(source);
  const Lines lines(source);
  const Brackets brackets(list);
  const Surroundings around(lines, MarkerFinder::significantLines(list, lines));
  std::vector<FoundSite> found;
  std::size_t token = 0;
  for (const int line : around.significant()) {
    while (token < list.tokens.size() && list.tokens[token].offset < lines.start(line)) ++token;
    FoundSite& site = found.emplace_back();
    site.line = line;
    site.anchor.text = withSingleBlanks(lines.line(line));
    if (token < list.tokens.size()) site.anchor.function = withSingleBlanks(brackets.functionAround(token));
    around.describe(line, line, site.anchor);
  }
  return found;
}

}  // namespace kelvar_sources
