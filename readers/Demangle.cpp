#include "Demangle.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace kelvar_readers {

namespace {

struct Free {
  void operator()(char* text) const noexcept { std::free(text); }  // NOLINT(cppcoreguidelines-no-malloc)
};

/// The index of the bracket that closes the one at `open`; npos when none does.
std::size_t closing(std::string_view text, std::size_t open, char opens, char closes) {
  int depth = 0;
  for (std::size_t i = open; i < text.size(); ++i) {
    if (text[i] == opens) ++depth;
    if (text[i] == closes && --depth == 0) return i;
  }
  return std::string_view::npos;
}

}  // namespace

std::string demangled(const std::string& symbol) {
  if (!symbol.starts_with("_Z")) return symbol;
  int status = 0;
  const std::unique_ptr<char, Free> text(abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status));
  return status == 0 && text ? std::string(text.get()) : symbol;
}

std::string plainName(std::string_view function) {
  constexpr std::string_view kAnonymous = "(anonymous namespace)::";
  std::string name;
  for (std::size_t i = 0; i < function.size(); ++i) {
    if (function.substr(i).starts_with(kAnonymous)) {
      i += kAnonymous.size() - 1;
    } else if (function[i] == '<' && !name.ends_with("operator") && !name.ends_with("operator<")) {
      const std::size_t end = closing(function, i, '<', '>');
      if (end == std::string_view::npos) return std::string(function);
      i = end;
    } else if (function[i] == '(' && function.substr(i).starts_with("()") && name.ends_with("operator")) {
      name += "()";
      ++i;
    } else if (function[i] == '(') {
      const std::size_t end = closing(function, i, '(', ')');
      // A local class of a function, or a lambda: the arguments are in the middle of the name.
      const std::string_view behind = function.substr(std::min(end, function.size() - 1) + 1);
      if (!behind.starts_with("::") && !behind.starts_with('#')) break;
      i = end;
    } else {
      name += function[i];
    }
  }
  const std::size_t blank = name.find("operator") == std::string::npos ? name.rfind(' ') : std::string::npos;
  if (blank != std::string::npos) name.erase(0, blank + 1);
  return name.empty() ? std::string(function) : name;
}

}  // namespace kelvar_readers
