#include "RuleSet.h"

#include "Lines.h"

namespace kelvar_sources {

namespace {

std::vector<std::string> searchedFor(const std::vector<Rule>& rules) {
  std::vector<std::string> words;
  for (const Rule& rule : rules) {
    if (rule.form == Form::remark) words.emplace_back("kelvar:");
    if (rule.form == Form::remark || rule.form == Form::directive) continue;
    words.emplace_back(lastWordOf(rule.pattern));
    // If the last word of a qualified name is short, a longer one of its words is searched for.
    if (words.back().size() >= FirstWords::kShortest) continue;
    const std::size_t colons = rule.pattern.rfind("::");
    if (colons == std::string::npos) continue;
    const std::string_view before = lastWordOf(std::string_view(rule.pattern).substr(0, colons));
    if (before.size() > words.back().size()) words.back() = before;
  }
  return words;
}

std::vector<std::string> modelsOf(const std::vector<Rule>& rules) {
  std::vector<std::string> models;
  for (const Rule& rule : rules) {
    if (rule.form == Form::directive) models.push_back(rule.pattern.substr(0, rule.pattern.find(' ')));
  }
  return models;
}

}  // namespace

std::string_view lastWordOf(std::string_view name) {
  const std::size_t colon = name.rfind(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

RuleSet::RuleSet(std::vector<Rule> rules)
    : rules_(std::move(rules)), firstWords_(searchedFor(rules_), modelsOf(rules_)) {
  for (std::size_t i = 0; i < rules_.size(); ++i) {
    const Rule& rule = rules_[i];
    ends_.emplace(rule.name, rule.end.at);
    if (rule.form == Form::directive) {
      directives_[rule.pattern.substr(0, rule.pattern.find(' '))].push_back(i);
    } else if (rule.form == Form::remark) {
      remarks_[rule.pattern].push_back(i);
    } else {
      addName(lastWordOf(rule.pattern));
      names_[std::string(lastWordOf(rule.pattern))].push_back(i);
      loweredNames_[lowered(lastWordOf(rule.pattern))].push_back(i);
    }
    if (rule.end.name.empty()) continue;
    addName(lastWordOf(rule.end.name));
    endNames_[std::string(lastWordOf(rule.end.name))].push_back(i);
    const std::string inLowerCase = lowered(lastWordOf(rule.end.name));
    if (inLowerCase != lastWordOf(rule.end.name)) endNames_[inLowerCase].push_back(i);
  }
}

void RuleSet::addName(std::string_view word) {
  if (!word.empty()) begins_[static_cast<unsigned char>(word.front())] = true;
}

const std::vector<std::size_t>& RuleSet::in(const ByText& map, std::string_view key) {
  static const std::vector<std::size_t> none;
  const auto found = map.find(key);
  return found == map.end() ? none : found->second;
}

const std::vector<std::size_t>& RuleSet::named(std::string_view lastWord) const {
  return in(names_, lastWord);
}

const std::vector<std::size_t>& RuleSet::namedInAnyCase(const std::string& loweredWord) const {
  return in(loweredNames_, loweredWord);
}

const std::vector<std::size_t>& RuleSet::directivesOf(std::string_view model) const {
  return in(directives_, model);
}

const std::vector<std::size_t>& RuleSet::remarksNamed(std::string_view word) const {
  return in(remarks_, word);
}

const std::vector<std::size_t>& RuleSet::endedBy(std::string_view lastWord) const {
  return in(endNames_, lastWord);
}

RegionEnd::At RuleSet::endOfRule(const std::string& name) const {
  const auto found = ends_.find(name);
  return found == ends_.end() ? RegionEnd::At::none : found->second;
}

}  // namespace kelvar_sources
