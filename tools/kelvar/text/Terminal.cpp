#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "Messages.h"
#include "Names.h"
#include "Unicode.h"

namespace kelvar_tool {

namespace {

constexpr std::size_t kNarrowest = 80;

std::size_t widthOf(bool terminal) {
  const char* const columns = std::getenv("COLUMNS");
  const auto wanted = columns ? decimal(columns, std::int64_t{1} << 16) : std::nullopt;
  if (wanted && *wanted > 0) return std::max(kNarrowest, static_cast<std::size_t>(*wanted));
  if (!terminal) return std::numeric_limits<std::size_t>::max();
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return kNarrowest;
  return std::max<std::size_t>(kNarrowest, size.ws_col);
}

// The marks that embed, override or isolate a direction, and those that merely hint at one: all are E2 80 or E2 81 and
// a third byte.
bool turnsDirection(std::string_view text) noexcept {
  if (text.size() < 3 || text[0] != '\xe2') return false;
  const auto last = static_cast<unsigned char>(text[2]);
  if (text[1] == '\x80') return last == 0x8e || last == 0x8f || (last >= 0xa8 && last <= 0xae);
  return text[1] == '\x81' && last >= 0xa6 && last <= 0xa9;
}

std::string spelledOut(std::string_view three) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const unsigned code =
      ((static_cast<unsigned char>(three[1]) & 0x3fU) << 6) | (static_cast<unsigned char>(three[2]) & 0x3fU);
  return {'\\', 'u', '2', kDigits[(code >> 8) & 0xf], kDigits[(code >> 4) & 0xf], kDigits[code & 0xf]};
}

}  // namespace

Terminal outputTerminal(Colour colour) {
  const bool terminal = ::isatty(STDOUT_FILENO) == 1;
  const char* const refused = std::getenv("NO_COLOR");
  Terminal out{.width = widthOf(terminal)};
  out.coloured =
      colour == Colour::always || (colour == Colour::automatic && terminal && (!refused || *refused == '\0'));
  out.bars = terminal || colour == Colour::always;
  return out;
}

std::string painted(const Terminal& terminal, Paint paint, std::string_view text) {
  static constexpr std::array kCodes{"", "1", "2", "32", "33", "1;31"};
  const std::string_view code = kCodes[static_cast<std::size_t>(paint)];
  if (!terminal.coloured || code.empty() || text.empty()) return std::string(text);
  return "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m";
}

std::string visible(std::string_view text) {
  const std::string plain = escaped(wellFormed(text));
  std::string out;
  for (std::size_t at = 0; at < plain.size(); ++at) {
    if (turnsDirection(std::string_view(plain).substr(at))) {
      out += spelledOut(std::string_view(plain).substr(at, 3));
      at += 2;
    } else {
      out += plain[at];
    }
  }
  return out;
}

std::string cutTo(const std::string& text, std::size_t width, bool keepEnd) {
  constexpr std::string_view kEllipsis = "\u2026";
  if (displayWidth(text) <= width) return text;
  const auto continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xc0) == 0x80; };
  std::string_view kept = text;
  // Start with the most bytes that `width` characters can have, then drop one character after the other.
  const std::size_t most = std::min(text.size(), 4 * width);
  std::size_t cut = keepEnd ? text.size() - most : most;
  while (cut < text.size() && cut > 0 && continues(cut)) cut = keepEnd ? cut + 1 : cut - 1;
  while (true) {
    kept = keepEnd ? std::string_view(text).substr(cut) : std::string_view(text).substr(0, cut);
    if (kept.empty() || displayWidth(kept) < width) break;
    do {
      cut = keepEnd ? cut + 1 : cut - 1;
    } while (cut < text.size() && cut > 0 && continues(cut));
  }
  return keepEnd ? std::string(kEllipsis) + std::string(kept) : std::string(kept) + std::string(kEllipsis);
}

}  // namespace kelvar_tool
