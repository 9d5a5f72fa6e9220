#include "Diagnosis.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Utf8.h"

namespace kelvar_platform {

namespace {

/// U+0080 to U+009F are control characters too, and begin with this byte; what follows it tells them from text.
constexpr char kTwoByteControlLead = '\xC2';

bool isControl(std::string_view character) {
  const auto last = static_cast<unsigned char>(character.back());
  if (character.size() == 1) return last < 0x20 || last == 0x7F;
  return character.size() == 2 && character.front() == kTwoByteControlLead && last < 0xA0;
}

void appendEscaped(std::string& out, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    out += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF]};
  }
}

/// Names of files and texts out of them go to a terminal: none of them may move its cursor or retitle its window.
void appendPrintable(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = characterSize(text);
    const std::string_view piece = text.substr(0, std::max<std::size_t>(size, 1));
    if (size == 0 || isControl(piece)) {
      appendEscaped(out, piece);
    } else {
      out += piece;
    }
    text.remove_prefix(piece.size());
  }
}

std::vector<Refusal>& refusalsOfThisThread() {
  thread_local std::vector<Refusal> refusals;
  return refusals;
}

}  // namespace

std::string Refusal::sentence() const {
  std::string out;
  appendPrintable(out, file);
  out += ": ";
  if (!place.empty()) {
    appendPrintable(out, place);
    out += ": ";
  }
  out += "expected ";
  appendPrintable(out, expected);
  return out;
}

ReadError::ReadError(Refusal refusal) : std::runtime_error(refusal.sentence()), refusal_(std::move(refusal)) {}

void note(Refusal refusal) {
  std::vector<Refusal>& refusals = refusalsOfThisThread();
  if (std::find(refusals.begin(), refusals.end(), refusal) == refusals.end()) refusals.push_back(std::move(refusal));
}

std::vector<Refusal> takeRefusals() {
  return std::exchange(refusalsOfThisThread(), {});
}

}  // namespace kelvar_platform
