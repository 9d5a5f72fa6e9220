#include "JsonFault.h"

#include <optional>
#include <vector>

#include "Utf8.h"

namespace kelvar_platform {

namespace {

bool isControl(char c) noexcept {
  return static_cast<unsigned char>(c) < 0x20;
}

/// Moves `at` from an opening quote past the closing one, or to the end if there is none.
std::optional<JsonFault> passText(std::string_view json, std::size_t& at) {
  for (++at; at < json.size() && json[at] != '"';) {
    const std::size_t size = characterSize(json.substr(at));
    if (size == 0) return JsonFault{at, "UTF-8"};
    if (isControl(json[at])) return JsonFault{at, "a text without control characters"};
    const std::string_view two = json.substr(at, 2);
    at += two == "\\\"" || two == "\\\\" ? two.size() : size;
  }
  if (at < json.size()) ++at;
  return std::nullopt;
}

/// Moves `at` past a character outside of strings.
std::optional<JsonFault> passPlain(std::string_view json, std::size_t& at) {
  const std::size_t size = characterSize(json.substr(at));
  if (size == 0) return JsonFault{at, "UTF-8"};
  if (size > 1 || isControl(json[at]) || json[at] == '\\') return JsonFault{at, "JSON"};
  ++at;
  return std::nullopt;
}

/// The brackets that are open, the innermost last.
class OpenBrackets {
 public:
  /// False for a bracket that closes none, or one of the other type. Other characters are ignored.
  [[nodiscard]] bool take(char c) {
    if (c == '{' || c == '[') areLists_.push_back(c == '[');
    if (c != '}' && c != ']') return true;
    if (areLists_.empty() || areLists_.back() != (c == ']')) return false;
    areLists_.pop_back();
    return true;
  }
  [[nodiscard]] bool empty() const noexcept { return areLists_.empty(); }

 private:
  std::vector<bool> areLists_;
};

}  // namespace

JsonFault firstFault(std::string_view json) {
  OpenBrackets open;
  bool complete = false;
  for (std::size_t at = json.find_first_not_of(kJsonBlanks); at < json.size();
       at = json.find_first_not_of(kJsonBlanks, at)) {
    const char c = json[at];
    if (complete) return {at, "the end of the file"};
    if (!open.take(c)) return {at, "JSON"};
    complete = (c == '}' || c == ']') && open.empty();
    if (const auto fault = c == '"' ? passText(json, at) : passPlain(json, at)) return *fault;
  }
  return {json.size(), "", "unexpected end of file"};
}

}  // namespace kelvar_platform
