#include "PageJson.h"

#include <array>
#include <charconv>
#include <cmath>

#include "Utf8.h"

namespace kelvar_page {

void PageJson::start(std::string_view key) {
  if (!first_) out_ += ',';
  first_ = false;
  if (key.empty()) return;
  appendText(key);
  out_ += ':';
}

PageJson& PageJson::begin(std::string_view key, char bracket) {
  start(key);
  out_ += bracket;
  first_ = true;
  return *this;
}

PageJson& PageJson::end(char bracket) {
  out_ += bracket;
  first_ = false;
  return *this;
}

PageJson& PageJson::text(std::string_view key, std::string_view value) {
  start(key);
  appendText(value);
  return *this;
}

PageJson& PageJson::number(std::string_view key, std::int64_t value) {
  start(key);
  out_ += std::to_string(value);
  return *this;
}

PageJson& PageJson::number(std::string_view key, double value) {
  start(key);
  if (!std::isfinite(value)) {
    out_ += "null";
    return *this;
  }
  std::array<char, 32> digits;
  const auto [stop, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general, 6);
  out_.append(digits.data(), stop);
  return *this;
}

PageJson& PageJson::flag(std::string_view key, bool value) {
  start(key);
  out_ += value ? "true" : "false";
  return *this;
}

PageJson& PageJson::raw(std::string_view key, std::string_view json) {
  start(key);
  out_ += json;
  return *this;
}

void PageJson::appendText(std::string_view value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out_ += '"';
  while (!value.empty()) {
    const auto byte = static_cast<unsigned char>(value.front());
    const std::size_t size = kelvar_platform::characterSize(value);
    if (size == 0 || byte == 0) {
      out_ += "\\ufffd";
    } else if (byte < 0x20 || byte == 0x7f || byte == '<' || byte == '>' || byte == '&' || byte == '"' ||
               byte == '\\') {
      out_ += {'\\', 'u', '0', '0', kDigits[byte >> 4], kDigits[byte & 0xf]};
    } else {
      out_ += value.substr(0, size);
    }
    value.remove_prefix(size == 0 ? 1 : size);
  }
  out_ += '"';
}

}  // namespace kelvar_page
