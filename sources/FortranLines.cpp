#include "FortranLines.h"

#include <algorithm>

#include "Conditionals.h"

namespace kelvar_sources {

namespace {

std::size_t firstCode(std::string_view line) {
  std::size_t at = 0;
  while (at < line.size() && isBlank(line[at])) ++at;
  return at;
}

bool isSentinel(std::string_view text) {
  const std::string name = lowered(text.substr(0, 4));
  return name == "$omp" || name == "$acc";
}

class Reader {
 public:
  Reader(const Lines& lines, bool fixedForm) : lines_(lines), fixed_(fixedForm), conditionals_(ignored_) {}

  std::vector<FortranLine> run() {
    for (int line = 1; line <= lines_.count(); ++line) take(line);
    return std::move(out_);
  }

 private:
  void take(int number) {
    const std::string_view line = lines_.line(number);
    if (line.starts_with('#')) return takeDirective(line);
    if (conditionals_.dead()) return;
    const std::size_t at = firstCode(line);
    if (at == line.size()) return;
    const bool comment = line[at] == '!' || (fixed_ && (line[0] == 'c' || line[0] == 'C' || line[0] == '*'));
    if (!comment) return takeCode(number, line, at);
    const std::size_t mark = line[at] == '!' ? at : 0;
    if (isSentinel(line.substr(mark + 1))) return takeSentinel(number, line, mark);
    takeComment(number, line, mark);
  }

  void takeDirective(std::string_view line) {
    std::size_t at = 1;
    while (at < line.size() && isBlank(line[at])) ++at;
    const std::size_t name = at;
    while (at < line.size() && isWordByte(line[at])) ++at;
    conditionals_.take(line.substr(name, at - name), line.substr(at), 0);
  }

  void takeComment(int number, std::string_view line, std::size_t mark) {
    std::string_view text = line.substr(mark + 1);
    text.remove_prefix(firstCode(text));
    constexpr std::string_view kName = "kelvar:";
    if (!text.starts_with(kName)) return;
    const auto column = static_cast<int>(text.data() - line.data()) + 1;
    out_.push_back({FortranLine::What::remark, number, number, column, std::string(text.substr(kName.size()))});
  }

  void takeSentinel(int number, std::string_view line, std::size_t mark) {
    std::string_view text = line.substr(mark + 2);  // after the `$`
    const std::string_view behind = text.substr(3);
    const bool continuesFixed =
        fixed_ && mark == 0 && line.size() > 5 && line[5] != ' ' && line[5] != '0' && line[5] != '\t';
    const bool continuesFree = !fixed_ && open_ && !out_.empty() && out_.back().what == FortranLine::What::directive;
    const std::size_t comment = std::min(text.find('!'), text.size());
    const std::string code = withSingleBlanks(text.substr(0, comment));
    open_ = !fixed_ && code.ends_with('&');
    if ((continuesFixed || continuesFree) && !out_.empty() && out_.back().what == FortranLine::What::directive) {
      out_.back().text += ' ' + withSingleBlanks(behind.substr(continuesFixed ? 1 : 0));
      out_.back().last = number;
      return;
    }
    out_.push_back({FortranLine::What::directive, number, number, static_cast<int>(mark) + 1, code});
  }

  void takeCode(int number, std::string_view line, std::size_t at) {
    const bool fixedGoesOn = fixed_ && at == 5 && line[5] != '0';
    const std::string code = withoutTexts(line.substr(fixedGoesOn ? 6 : at));
    if (code.empty()) return;
    const bool goesOn = fixedGoesOn || (!fixed_ && codeOpen_);
    codeOpen_ = !fixed_ && code.ends_with('&');
    if (goesOn && !out_.empty() && out_.back().what == FortranLine::What::code) {
      constexpr std::size_t kLongest = 4000;  // no relevant statement is longer
      if (out_.back().text.size() < kLongest) out_.back().text += ' ' + code;
      out_.back().last = number;
      return;
    }
    out_.push_back({FortranLine::What::code, number, number, static_cast<int>(at) + 1, code});
  }

  /// The code of a line in lower case, without comments and the content of quotes.
  static std::string withoutTexts(std::string_view line) {
    std::string code;
    char quote = 0;
    for (const char c : line) {
      if (quote == 0 && c == '!') break;
      if (quote == 0 || c == quote) code += c;
      if (quote == 0 && (c == '"' || c == '\'')) {
        quote = c;
      } else if (c == quote) {
        quote = 0;
      }
    }
    return lowered(withSingleBlanks(code));
  }

  const Lines& lines_;
  bool fixed_;
  TokenList ignored_{};
  Conditionals conditionals_;
  bool open_ = false;
  bool codeOpen_ = false;
  std::vector<FortranLine> out_;
};

}  // namespace

std::vector<FortranLine> fortranLines(const Lines& lines, bool fixedForm) {
  return Reader(lines, fixedForm).run();
}

}  // namespace kelvar_sources
