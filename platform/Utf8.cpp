#include "Utf8.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "JsonParser.h"

namespace kelvar_platform {

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080;

bool isPlain(std::string_view text) noexcept {
  while (text.size() >= sizeof(std::uint64_t)) {
    std::uint64_t word;
    std::memcpy(&word, text.data(), sizeof word);
    if ((word & kHighBits) != 0) return false;
    text.remove_prefix(sizeof word);
  }
  unsigned all = 0;
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

}  // namespace

bool isUtf8(std::string_view text) noexcept {
  return isPlain(text) || simdjson::validate_utf8(text.data(), text.size());
}

std::size_t characterSize(std::string_view text) noexcept {
  if (text.empty()) return 0;
  const auto leadingOnes = static_cast<std::size_t>(std::countl_one(static_cast<unsigned char>(text.front())));
  const std::size_t size = leadingOnes == 0 ? 1 : leadingOnes;
  return size <= text.size() && isUtf8(text.substr(0, size)) ? size : 0;
}

}  // namespace kelvar_platform
