#include "Rules.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "Lines.h"

namespace kelvar_sources {

namespace {

using At = RegionEnd::At;
using From = LabelSource::From;
using K = sitenotes::annotation_t;

constexpr std::string_view kPragma = "#pragma ";
constexpr std::string_view kRemark = "// kelvar: ";
constexpr std::string_view kArgument = "argument ";

struct EndWord {
  std::string_view word;
  At at;
  bool named;
};
constexpr std::array kEndWords{EndWord{"none", At::none, false},  EndWord{"statement", At::statement, false},
                               EndWord{"call", At::call, false},  EndWord{"block", At::block, false},
                               EndWord{"until", At::until, true}, EndWord{"handle", At::handle, true}};

struct LabelWord {
  std::string_view word;
  From from;
  bool numbered;
};
constexpr std::array kLabelWords{LabelWord{"none", From::none, false}, LabelWord{"literal", From::literal, true},
                                 LabelWord{"argument", From::argument, true},
                                 LabelWord{"brackets", From::brackets, false}};

bool isName(std::string_view text) {
  const bool bytes = std::all_of(text.begin(), text.end(), [](char c) { return isWordByte(c) || c == ':'; });
  return bytes && !text.empty() && !isDigit(text.front()) && text.front() != ':' && text.back() != ':';
}

/// Whether these are the words of a directive, separated by single blanks, as in `omp parallel`.
bool isDirective(std::string_view words) {
  const std::size_t blank = words.find(' ');
  return blank != std::string_view::npos && isName(words.substr(0, blank)) &&
         std::all_of(words.begin(), words.end(), [](char c) { return isWordByte(c) || c == ' '; }) &&
         words.back() != ' ';
}

}  // namespace

std::optional<Kind> endOf(Kind kind) noexcept {
  switch (kind) {
    case K::parallel:
      return K::end_parallel;
    case K::task:
    case K::taskloop:
      return K::end_task;
    case K::critical:
      return K::end_critical;
    default:
      return {};
  }
}

std::string patternText(const Rule& rule) {
  switch (rule.form) {
    case Form::directive:
      return std::string(kPragma) + rule.pattern;
    case Form::call:
      return rule.pattern + '(';
    case Form::object:
      return rule.pattern;
    case Form::argument:
      return std::string(kArgument) + rule.pattern;
    case Form::remark:
      return std::string(kRemark) + rule.pattern;
  }
  return {};
}

std::string labelText(const Rule& rule) {
  for (const LabelWord& one : kLabelWords) {
    if (one.from != rule.label.from) continue;
    return std::string(one.word) + (one.numbered ? ' ' + std::to_string(rule.label.index) : std::string());
  }
  return {};
}

std::string endText(const Rule& rule) {
  for (const EndWord& one : kEndWords) {
    if (one.at == rule.end.at) return std::string(one.word) + (one.named ? ' ' + rule.end.name : std::string());
  }
  return {};
}

std::string setPattern(Rule& rule, std::string_view text) {
  constexpr const char* kExpected = "'#pragma WORDS', 'NAME(', 'NAME', 'argument NAME' or '// kelvar: WORD'";
  if (text.starts_with(kPragma)) {
    text.remove_prefix(kPragma.size());
    if (!isDirective(text)) return kExpected;
    rule.form = Form::directive;
  } else if (text.starts_with(kRemark)) {
    text.remove_prefix(kRemark.size());
    rule.form = Form::remark;
  } else if (text.starts_with(kArgument)) {
    text.remove_prefix(kArgument.size());
    rule.form = Form::argument;
  } else if (text.ends_with('(')) {
    text.remove_suffix(1);
    rule.form = Form::call;
  } else {
    rule.form = Form::object;
  }
  if (rule.form != Form::directive && !isName(text)) return kExpected;
  rule.pattern = text;
  return {};
}

std::string setLabel(Rule& rule, std::string_view text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  for (const LabelWord& one : kLabelWords) {
    if (one.word != text.substr(0, blank) || one.numbered != (blank < text.size())) continue;
    rule.label = {.from = one.from};
    if (!one.numbered) return {};
    const std::string_view number = text.substr(blank + 1);
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), rule.label.index);
    if (error == std::errc() && end == number.data() + number.size() && rule.label.index >= 1) return {};
  }
  return "'none', 'literal N', 'argument N' or 'brackets'";
}

std::string setEnd(Rule& rule, std::string_view text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  for (const EndWord& one : kEndWords) {
    if (one.word != text.substr(0, blank) || one.named != (blank < text.size())) continue;
    if (one.named && !isName(text.substr(blank + 1))) continue;
    rule.end = {.at = one.at, .name = std::string(one.named ? text.substr(blank + 1) : std::string_view())};
    return {};
  }
  return "'none', 'statement', 'call', 'block', 'until NAME' or 'handle NAME'";
}

}  // namespace kelvar_sources
