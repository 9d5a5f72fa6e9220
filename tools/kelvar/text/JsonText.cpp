#include "JsonText.h"

#include <cmath>

#include "Unicode.h"

namespace kelvar_tool {

namespace {

void appendEscape(std::string& out, char c) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(c);
  if (c == '"' || c == '\\') {
    out += {'\\', c};
  } else {
    out += {'\\', 'u', '0', '0', kDigits[byte >> 4], kDigits[byte & 0xf]};
  }
}

void appendText(std::string& out, std::string_view text) {
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7f || c == '"' || c == '\\') {
      appendEscape(out, c);
    } else {
      out += c;
    }
  }
  out += '"';
}

bool isNull(const Cell& cell) {
  const double* const number = std::get_if<double>(&cell);
  return isMissing(cell) || (number && !std::isfinite(*number));
}

}  // namespace

void JsonText::start(std::string_view key) {
  constexpr int kBroken = 2;
  if (!first_) out_ += ',';
  first_ = false;
  if (depth_ > 0 && depth_ <= kBroken) out_ += '\n';
  if (key.empty()) return;
  out_ += '"';
  out_ += key;
  out_ += "\":";
}

void JsonText::begin(std::string_view key, char bracket) {
  start(key);
  out_ += bracket;
  ++depth_;
  first_ = true;
}

void JsonText::end(char bracket) {
  out_ += bracket;
  --depth_;
  first_ = false;
}

void JsonText::value(std::string_view key, const Cell& cell) {
  start(key);
  if (isNull(cell)) {
    out_ += "null";
  } else if (isText(cell)) {
    appendText(out_, wellFormed(std::get<std::string>(cell)));
  } else {
    append(out_, cell);
  }
}

}  // namespace kelvar_tool
