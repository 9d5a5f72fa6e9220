#include "Fortran.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Directive.h"
#include "FortranBlocks.h"
#include "FortranLines.h"
#include "MarkerRemark.h"
#include "RegionPairs.h"
#include "Surroundings.h"

namespace kelvar_sources {

namespace {

constexpr const char* kRemarkEnd = "kelvar: end";

constexpr std::array<std::string_view, 10> kClosing{"end",          "enddo",    "endif", "endwhere",  "endselect",
                                                    "endassociate", "endblock", "else",  "elsewhere", "continue"};
/// Words that may follow `end` or `else` in a statement that only closes a block.
constexpr std::array<std::string_view, 6> kClosed{"do", "if", "where", "select", "associate", "block"};

template <class Words>
bool isOneOf(const Words& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// `enddo ; enddo`, `else` or `10 continue`: like a lone bracket in C.
bool onlyCloses(std::string_view code) {
  std::string_view last;
  for (std::size_t at = 0; at < code.size();) {
    std::size_t size = 0;
    while (at + size < code.size() && isWordByte(code[at + size])) ++size;
    const std::string_view word = code.substr(at, size);
    if (size == 0) {
      if (!isBlank(code[at]) && code[at] != ';') return false;
      ++at;
      continue;
    }
    const bool closed = (last == "end" || last == "else") && isOneOf(kClosed, word);
    if (!closed && !isOneOf(kClosing, word) && !isDigit(word.front())) return false;
    last = word;
    at += size;
  }
  return true;
}

std::vector<int> significantLines(const std::vector<FortranLine>& logical) {
  std::vector<int> significant;
  for (const FortranLine& line : logical) {
    if (line.what == FortranLine::What::remark) continue;
    if (line.what == FortranLine::What::code && onlyCloses(line.text)) continue;
    if (significant.empty() || significant.back() < line.first) significant.push_back(line.first);
  }
  return significant;
}

/// Whether the region of the directive ends with the following loop if there is no end directive.
bool belongsToLoop(const Directive& directive) {
  return std::any_of(directive.words.begin(), directive.words.end(), [](const std::string& word) {
    return word == "do" || word == "simd" || word == "loop" || word == "taskloop" || word == "distribute";
  });
}

class FortranFinder {
 public:
  FortranFinder(const Lines& lines, bool fixedForm, const RuleSet& rules)
      : lines_(lines),
        logical_(fortranLines(lines, fixedForm)),
        rules_(rules),
        around_(lines, significantLines(logical_)) {
    found_.lines = lines.count();
  }

  FileSites run() {
    for (std::size_t i = 0; i < logical_.size(); ++i) take(i);
    for (const RegionPairs::Pair& pair : pairs_.pairs()) ends_[pair.site] = pair.end;
    addEnds();
    return std::move(found_);
  }

  [[nodiscard]] std::vector<FoundSite> codeLines() {
    std::vector<FoundSite> places;
    for (const FortranLine& line : logical_) {
      if (line.what == FortranLine::What::code) static_cast<void>(blocks_.take(line.text));
      if (line.what == FortranLine::What::remark) continue;
      FoundSite& site = places.emplace_back();
      site.line = line.first;
      describe(site, line, blocks_.procedure());
    }
    return places;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct LoopDirective {
    std::string name;
    std::vector<std::size_t> sites;
    int block = 0;  ///< of the loop; 0: it has not begun
  };

  void take(std::size_t index) {
    const FortranLine& line = logical_[index];
    if (line.what == FortranLine::What::code) return takeCode(index);
    if (line.what == FortranLine::What::remark) return takeRemark(index);
    const Directive directive = directiveIn(line.text, true);
    if (directive.end) return takeEnd(directive, index);
    takeDirective(directive, index);
  }

  void takeDirective(const Directive& directive, std::size_t index) {
    LoopDirective loop{.name = directive.name(), .sites = {}};
    bool hasKind = false;
    for (const std::size_t rule : rulesFor(directive, rules_)) {
      if (!rules_.rule(rule).kind) continue;
      hasKind = true;
      FoundSite& site = addSite(rule, index);
      if (rules_.rule(rule).label.from == LabelSource::From::brackets) site.anchor.label = directive.brackets;
      if (rules_.rule(rule).end.at != RegionEnd::At::statement) continue;
      pairs_.begin("end " + directive.name(), {}, found_.sites.size() - 1, 0);
      loop.sites.push_back(found_.sites.size() - 1);
    }
    if (!hasKind && !directive.model.empty()) ++found_.kindless[directive.name()];
    if (belongsToLoop(directive) && !loop.sites.empty()) loops_.push_back(std::move(loop));
  }

  void takeEnd(const Directive& directive, std::size_t index) { pairs_.end("end " + directive.name(), {}, index, 0); }

  void takeCode(std::size_t index) {
    const std::vector<FortranBlocks::Block> closed = blocks_.take(logical_[index].text);
    if (blocks_.openedLoop() && !loops_.empty() && loops_.back().block == 0) loops_.back().block = blocks_.innermost();
    for (const FortranBlocks::Block& block : closed) closeBlock(block, index);
    takeCall(index);
  }

  void closeBlock(const FortranBlocks::Block& block, std::size_t index) {
    while (!loops_.empty() && loops_.back().block == block.number) {
      for (const std::size_t site : loops_.back().sites) ends_[site] = index;
      loops_.pop_back();
    }
    for (std::size_t i = waiting_.size(); i-- > 0 && waiting_[i].second == block.number;) {
      ends_[waiting_[i].first] = index;
      waiting_.pop_back();
    }
  }

  void takeRemark(std::size_t index) {
    const MarkerRemark remark = remarkIn(logical_[index].text);
    const auto block = static_cast<std::uint32_t>(blocks_.innermost());
    if (remark.word == "end") return pairs_.end(kRemarkEnd, remark.label, index, block);
    if (rules_.remarksNamed(remark.word).empty()) ++found_.kindless["kelvar: " + remark.word];
    for (const std::size_t rule : rules_.remarksNamed(remark.word)) {
      addSite(rule, index).anchor.label = remark.label;
      waiting_.emplace_back(found_.sites.size() - 1, blocks_.innermost());
      pairs_.begin(kRemarkEnd, remark.label, found_.sites.size() - 1, block);
    }
  }

  /// `call name(args)`.
  void takeCall(std::size_t index) {
    const std::string& text = logical_[index].text;
    const std::size_t call = text.find("call ");
    if (call == std::string::npos || (call > 0 && isWordByte(text[call - 1]))) return;
    std::size_t end = call + 5;
    while (end < text.size() && isWordByte(text[end])) ++end;
    const std::string name = text.substr(call + 5, end - call - 5);
    const auto block = static_cast<std::uint32_t>(blocks_.innermost());
    const std::string argument = firstArgument(index);
    for (const std::size_t rule : rules_.endedBy(name)) {
      pairs_.end(rules_.rule(rule).end.name, argument, index, block);
      break;
    }
    for (const std::size_t rule : rules_.namedInAnyCase(name)) {
      const Rule& row = rules_.rule(rule);
      if (row.form != Form::call || row.pattern.find(':') != std::string::npos || !row.kind) continue;
      FoundSite& site = addSite(rule, index);
      if (row.label.from == LabelSource::From::argument || row.label.from == LabelSource::From::literal) {
        site.anchor.label = argument;
      }
      if (row.end.at == RegionEnd::At::until || row.end.at == RegionEnd::At::handle) {
        pairs_.begin(row.end.name, argument, found_.sites.size() - 1, block);
      }
    }
  }

  /// A text without its quotes, or a name as written.
  [[nodiscard]] std::string firstArgument(std::size_t index) const {
    const std::string_view line = lines_.line(logical_[index].first);
    const std::size_t open = line.find('(');
    if (open == std::string_view::npos) return {};
    std::string_view rest = line.substr(open + 1);
    while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
    if (rest.starts_with('"') || rest.starts_with('\'')) {
      return withSingleBlanks(rest.substr(1, rest.find(rest.front(), 1) - 1));
    }
    return withSingleBlanks(rest.substr(0, rest.find_first_of(",)")));
  }

  FoundSite& addSite(std::size_t rule, std::size_t index) {
    FoundSite& site = found_.sites.emplace_back();
    ends_.push_back(kNone);
    site.kind = *rules_.rule(rule).kind;
    site.line = logical_[index].first;
    site.column = logical_[index].column;
    site.anchor.rule = rules_.rule(rule).name;
    describe(site, logical_[index], blocks_.procedure());
    return site;
  }

  void describe(FoundSite& site, const FortranLine& line, const std::string& function) {
    std::string text;
    const int last = line.what == FortranLine::What::directive ? line.last : line.first;
    for (int number = line.first; number <= last; ++number) text.append(lines_.line(number)).append(" ");
    site.anchor.text = withSingleBlanks(text);
    site.anchor.function = function;
    around_.describe(line.first, line.last, site.anchor);
  }

  void addEnds() {
    const std::size_t markers = found_.sites.size();
    for (std::size_t i = 0; i < markers; ++i) {
      const std::optional<Kind> kind = endOf(found_.sites[i].kind);
      if (!kind || rules_.endOfRule(found_.sites[i].anchor.rule) == RegionEnd::At::none) continue;
      if (ends_[i] == kNone) {
        found_.sites[i].unclosed = true;
        continue;
      }
      const FortranLine& line = logical_[ends_[i]];
      FoundSite end{.kind = *kind, .line = line.first, .column = line.column, .isEnd = true, .anchor = {}};
      end.anchor.rule = found_.sites[i].anchor.rule;
      end.anchor.label = found_.sites[i].anchor.label;
      describe(end, line, found_.sites[i].anchor.function);
      found_.sites[i].end = static_cast<int>(found_.sites.size());
      found_.sites.push_back(std::move(end));
    }
  }

  const Lines& lines_;
  const std::vector<FortranLine> logical_;
  const RuleSet& rules_;
  const Surroundings around_;
  FortranBlocks blocks_;
  FileSites found_;
  std::vector<std::size_t> ends_;                     // by site: the logical line that ends it
  std::vector<LoopDirective> loops_;                  // whose loop has not ended
  std::vector<std::pair<std::size_t, int>> waiting_;  // sites of comments, and the block around each
  RegionPairs pairs_;
};

}  // namespace

FileSites fortranMarkersIn(std::string_view source, bool fixedForm, const RuleSet& rules) {
  const Lines lines(source);
  return FortranFinder(lines, fixedForm, rules).run();
}

std::vector<FoundSite> fortranCodeLinesIn(std::string_view source, bool fixedForm) {
  static const RuleSet none{std::vector<Rule>()};
  const Lines lines(source);
  return FortranFinder(lines, fixedForm, none).codeLines();
}

}  // namespace kelvar_sources
