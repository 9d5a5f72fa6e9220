#include "Lines.h"

#include <algorithm>
#include <cstring>

namespace kelvar_sources {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The size of the UTF-8 character at the beginning of `text`; 0 if there is none.
std::size_t characterSize(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead == 0) return 0;
  if (lead < 0x80) return 1;
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  if (lead == 0xE0 && byte(1) < 0xA0) return 0;  // overlong encoding
  if (lead == 0xED && byte(1) > 0x9F) return 0;  // UTF-16 surrogate
  if (lead == 0xF0 && byte(1) < 0x90) return 0;
  if (lead == 0xF4 && byte(1) > 0x8F) return 0;  // past the last character
  return size;
}

bool isSplice(std::string_view text, std::size_t at) {
  return text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '\n' || text[at + 1] == '\r');
}

std::string normalised(std::string_view text, std::string_view blank) {
  std::string out;
  out.reserve(text.size());
  bool pending = false;
  for (std::size_t at = 0; at < text.size();) {
    if (isBlank(text[at]) || isSplice(text, at)) {
      pending = true;
      ++at;
      continue;
    }
    if (pending && !out.empty()) out += blank;
    pending = false;
    const std::size_t size = characterSize(text.substr(at));
    out += size == 0 ? kReplacement : text.substr(at, size);
    at += std::max<std::size_t>(size, 1);
  }
  return out;
}

}  // namespace

Lines::Lines(std::string_view text) : text_(text) {
  starts_.reserve(text.size() / 32);
  for (std::size_t start = 0; start < text.size();) {
    starts_.push_back(static_cast<std::uint32_t>(start));
    const void* const end = std::memchr(text.data() + start, '\n', text.size() - start);
    if (end == nullptr) break;
    start = static_cast<std::size_t>(static_cast<const char*>(end) - text.data()) + 1;
  }
}

int Lines::lineAt(std::size_t offset) const noexcept {
  const auto after = std::upper_bound(starts_.begin(), starts_.end(), offset);
  return std::max(1, static_cast<int>(after - starts_.begin()));
}

int Lines::columnAt(std::size_t offset) const noexcept {
  return starts_.empty() ? 1 : static_cast<int>(offset - start(lineAt(offset))) + 1;
}

std::string_view Lines::line(int number) const noexcept {
  if (number < 1 || number > count()) return {};
  const std::size_t begin = start(number);
  std::size_t end = number == count() ? text_.size() : start(number + 1) - 1;
  if (end > begin && text_[end - 1] == '\n') --end;
  if (end > begin && text_[end - 1] == '\r') --end;
  return text_.substr(begin, end - begin);
}

std::string withSingleBlanks(std::string_view text) {
  return normalised(text, " ");
}

std::string withoutBlanks(std::string_view text) {
  return normalised(text, "");
}

std::string lowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return out;
}

}  // namespace kelvar_sources
