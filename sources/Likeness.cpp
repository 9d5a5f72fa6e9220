#include "Likeness.h"

#include <algorithm>
#include <iterator>

#include "Directive.h"
#include "Lines.h"

namespace kelvar_sources {

namespace {

/// The directive on a line, or else the text before its first bracket.
std::string directiveOf(std::string_view text) {
  const std::size_t pragma = text.find("pragma ");
  if (text.starts_with('#') && pragma != std::string_view::npos) {
    return directiveIn(text.substr(pragma + std::string_view("pragma ").size())).name();
  }
  const bool sentinel = text.size() > 2 && text[1] == '$';
  if (sentinel) return directiveIn(text.substr(2), true).name();
  return std::string(text.substr(0, text.find_first_of("(\"")));
}

template <std::size_t Size>
void takeLines(std::string_view text, bool lastFirst, std::array<std::uint32_t, Size>& lines, TextNumbers& numbers) {
  std::size_t count = 0;
  while (!text.empty() && count < Size) {
    const std::size_t end = lastFirst ? text.rfind('\n') : text.find('\n');
    if (end == std::string_view::npos) {
      lines[count++] = numbers.of(text);
      return;
    }
    lines[count++] = numbers.of(lastFirst ? text.substr(end + 1) : text.substr(0, end));
    text = lastFirst ? text.substr(0, end) : text.substr(end + 1);
  }
}

/// The number of lines that both have, each counted once.
int commonLines(const std::array<std::uint32_t, Fingerprint::kLines>& a,
                const std::array<std::uint32_t, Fingerprint::kLines>& b) {
  std::array<bool, Fingerprint::kLines> used{};
  int common = 0;
  for (const std::uint32_t line : a) {
    for (std::size_t i = 0; line != 0 && i < b.size(); ++i) {
      if (used[i] || b[i] != line) continue;
      used[i] = true;
      ++common;
      break;
    }
  }
  return common;
}

}  // namespace

std::uint32_t TextNumbers::of(std::string_view text) {
  plain_.clear();
  std::copy_if(text.begin(), text.end(), std::back_inserter(plain_), [](char c) { return !isBlank(c); });
  if (plain_.empty()) return 0;
  const auto found = numbers_.find(std::string_view(plain_));
  if (found != numbers_.end()) return found->second;
  return numbers_.emplace(plain_, static_cast<std::uint32_t>(numbers_.size() + 1)).first->second;
}

Fingerprint fingerprintOf(Kind kind, const Anchor& anchor, TextNumbers& numbers) {
  Fingerprint print;
  print.kind = static_cast<std::uint32_t>(kind);
  print.text = numbers.of(anchor.text);
  print.directive = numbers.of(directiveOf(anchor.text));
  print.function = numbers.of(anchor.function);
  takeLines(anchor.before, true, print.before, numbers);
  takeLines(anchor.after, false, print.after, numbers);
  return print;
}

int likeness(const Fingerprint& a, const Fingerprint& b) {
  if (a.kind != b.kind) return 0;
  int sum = 2 * commonLines(a.after, b.after) + commonLines(a.before, b.before);
  if (a.text == b.text) sum += 3;
  if (a.directive == b.directive) sum += 1;
  if (a.function == b.function) sum += 3;
  if (a.after[0] != 0 && a.after[0] == b.after[0]) sum += 2;
  return sum;
}

Key keyOf(const Fingerprint& print, KeyLevel level) {
  Key key{print.kind, print.text, level == KeyLevel::textAndAfter ? 0 : print.function};
  std::copy(print.after.begin(), print.after.end(), key.begin() + 3);
  if (level == KeyLevel::full) std::copy(print.before.begin(), print.before.end(), key.begin() + 6);
  return key;
}

std::size_t KeyHash::operator()(const Key& key) const noexcept {
  std::uint64_t hash = 0x9E3779B97F4A7C15U;
  for (const std::uint32_t part : key) hash = (hash ^ part) * 0xFF51AFD7ED558CCDU ^ (hash >> 29U);
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

}  // namespace kelvar_sources
