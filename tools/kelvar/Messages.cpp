#include "Messages.h"

#include <unistd.h>

#include <cstdlib>

#include "Output.h"
#include "Utf8.h"

namespace kelvar_tool {

namespace {

bool errorsGoToTerminal() noexcept {
  return ::isatty(STDERR_FILENO) == 1;
}

bool coloured() {
  const char* const refused = std::getenv("NO_COLOR");
  return errorsGoToTerminal() && (!refused || *refused == '\0');
}

void appendHex(std::string& out, unsigned char byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out += "\\x";
  out += kDigits[byte >> 4];
  out += kDigits[byte & 0xf];
}

void appendEscaped(std::string& out, unsigned char byte) {
  switch (byte) {
    case '\t':
      out += "\\t";
      break;
    case '\n':
      out += "\\n";
      break;
    case '\r':
      out += "\\r";
      break;
    case '\\':
      out += "\\\\";
      break;
    default:
      appendHex(out, byte);
  }
}

bool isControl(unsigned char byte) noexcept {
  return byte < 0x20 || byte == 0x7f;
}

// U+0080 to U+009F, two bytes each in UTF-8: one of them begins a control sequence on terminals.
bool isHighControl(std::string_view text) noexcept {
  return text.size() >= 2 && text[0] == '\xc2' && static_cast<unsigned char>(text[1]) >= 0x80 &&
         static_cast<unsigned char>(text[1]) < 0xa0;
}

}  // namespace

void say(std::string_view sentence) {
  std::string line = coloured() ? "\x1b[1;31mkelvar:\x1b[0m " : "kelvar: ";
  line += sentence;
  line += '\n';
  static_cast<void>(writeAll(STDERR_FILENO, line));
}

std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (isHighControl(text.substr(at))) {
      appendHex(out, byte);
      appendHex(out, static_cast<unsigned char>(text[++at]));
    } else if (isControl(byte) || byte == '\\') {
      appendEscaped(out, byte);
    } else if (const std::size_t size = kelvar_platform::characterSize(text.substr(at)); size > 0) {
      out += text.substr(at, size);
      at += size - 1;
    } else {
      appendHex(out, byte);  // a terminal would show it as anything
    }
  }
  return out;
}

std::string inQuotes(std::string_view text) {
  return "'" + escaped(text) + "'";
}

std::string counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

Progress::Progress() noexcept : terminal_(errorsGoToTerminal()) {}

Progress::~Progress() {
  clear();
}

void Progress::show(std::string_view activity) {
  if (!terminal_) return;
  static_cast<void>(writeAll(STDERR_FILENO, "\r\x1b[Kkelvar: " + escaped(activity)));
  shown_ = true;
}

void Progress::clear() noexcept {
  if (shown_) static_cast<void>(writeAll(STDERR_FILENO, "\r\x1b[K"));
  shown_ = false;
}

}  // namespace kelvar_tool
