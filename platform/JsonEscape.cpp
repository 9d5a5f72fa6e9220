#include "JsonEscape.h"

#include <cstddef>

namespace kelvar_platform {

namespace {

void appendEscape(std::string& out, char c) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(c);
  switch (c) {
    case '"':
    case '\\':
      out += {'\\', c};
      return;
    case '\n':
      out += "\\n";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      out += {'\\', 'u', '0', '0', kDigits[byte >> 4], kDigits[byte & 0xF]};
  }
}

}  // namespace

void appendJsonText(std::string& out, std::string_view value) {
  out += '"';
  while (!value.empty()) {
    std::size_t plain = 0;
    while (plain < value.size() && static_cast<unsigned char>(value[plain]) >= 0x20 && value[plain] != '"' &&
           value[plain] != '\\') {
      ++plain;
    }
    out += value.substr(0, plain);
    value.remove_prefix(plain);
    if (value.empty()) break;
    appendEscape(out, value.front());
    value.remove_prefix(1);
  }
  out += '"';
}

}  // namespace kelvar_platform
