#include "Directive.h"

#include <algorithm>
#include <array>

#include "Lines.h"

namespace kelvar_sources {

namespace {

/// Words that combine to one directive. Any other first word is a directive by itself. The first word that cannot be
/// combined begins the clauses: `ordered` in `for ordered`, `parallel` in `cancel parallel`.
constexpr std::array<std::string_view, 20> kCombining{
    "parallel", "for",  "do",     "sections", "simd",    "master", "masked", "target",  "teams",     "distribute",
    "loop",     "task", "single", "taskloop", "kernels", "serial", "scope",  "section", "workshare", "workdistribute"};
/// Words after `target` that make it another directive, one without code.
constexpr std::array<std::string_view, 4> kDataWords{"data", "enter", "exit", "update"};

template <class Words>
bool isIn(const Words& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// For other models, it is not known where the clauses begin.
bool isKnownModel(std::string_view model) {
  return model == "omp" || model == "acc";
}

class WordReader {
 public:
  explicit WordReader(std::string_view text) : text_(text) {}

  std::string_view next() {
    skipBlanks();
    std::size_t size = 0;
    while (at_ + size < text_.size() && isWordByte(text_[at_ + size])) ++size;
    at_ += size;
    return text_.substr(at_ - size, size);
  }
  /// Goes back to before the last word.
  void back(std::string_view word) { at_ -= word.size(); }

  std::string_view brackets() {
    skipBlanks();
    if (at_ >= text_.size() || text_[at_] != '(') return {};
    const std::size_t end = text_.find(')', at_);
    return end == std::string_view::npos ? std::string_view() : text_.substr(at_ + 1, end - at_ - 1);
  }

 private:
  void skipBlanks() {
    while (at_ < text_.size() && (isBlank(text_[at_]) || text_[at_] == '\\' || text_[at_] == '&' || text_[at_] == ','))
      ++at_;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

/// Fortran allows `enddo`, `paralleldo` and the like for two words.
std::string splitFused(std::string word) {
  for (const std::string_view first : {std::string_view("end"), std::string_view("parallel")}) {
    const std::string_view rest = std::string_view(word).substr(std::min(first.size(), word.size()));
    if (word.starts_with(first) && (isIn(kCombining, rest) || rest == "critical" || rest == "ordered")) {
      return std::string(first) + ' ' + std::string(rest);
    }
  }
  return word;
}

}  // namespace

bool Directive::has(std::string_view word) const {
  return isIn(words, word);
}

std::string Directive::name() const {
  std::string all = model;
  for (const std::string& word : words) all += ' ' + word;
  return all;
}

Directive directiveIn(std::string_view text, bool anyCase) {
  const std::string changed = anyCase ? lowered(text) : std::string(text);
  WordReader reader(changed);
  Directive directive{.model = std::string(reader.next()), .words = {}, .brackets = {}};
  std::vector<std::string> waiting;
  bool more = true;
  while (more) {
    const std::string_view read = reader.next();
    if (read.empty()) break;
    std::string word(read);
    if (anyCase) word = splitFused(word);
    const std::size_t blank = word.find(' ');
    std::string rest;
    if (blank != std::string::npos) {
      rest = word.substr(blank + 1);
      word.resize(blank);
    }
    if (word == "end" && directive.words.empty() && !directive.end) {
      directive.end = true;
    } else if (isIn(kCombining, word) || !isKnownModel(directive.model)) {
      directive.words.push_back(word);
    } else if (directive.words.empty() || (isIn(kDataWords, word) && directive.words.back() == "target")) {
      directive.words.push_back(word);
      more = false;
    } else {
      reader.back(read);
      break;
    }
    if (!rest.empty()) directive.words.push_back(rest);
  }
  directive.brackets = withSingleBlanks(reader.brackets());
  return directive;
}

std::vector<std::size_t> rulesFor(const Directive& directive, const RuleSet& rules) {
  std::vector<std::size_t> found;
  for (const std::size_t index : rules.directivesOf(directive.model)) {
    const std::string& pattern = rules.rule(index).pattern;
    bool all = true;
    for (std::size_t at = pattern.find(' '); all && at != std::string::npos;) {
      const std::size_t next = pattern.find(' ', at + 1);
      all = directive.has(std::string_view(pattern).substr(at + 1, next - at - 1));
      at = next;
    }
    if (all) found.push_back(index);
  }
  return found;
}

}  // namespace kelvar_sources
