#include "CsvText.h"

#include <algorithm>

#include "Unicode.h"

namespace kelvar_tool {

namespace {

// Leading and trailing blanks and control characters may be unquoted, but not every reader preserves them.
bool needsQuotes(std::string_view text) {
  const auto special = [](char c) { return c == '"' || c == ',' || static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
  return text.empty() || text.front() == ' ' || text.back() == ' ' || std::any_of(text.begin(), text.end(), special);
}

void appendText(std::string& out, std::string_view text) {
  if (!needsQuotes(text)) {
    out += text;
    return;
  }
  out += '"';
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

}  // namespace

void appendField(std::string& out, const Cell& cell) {
  if (isText(cell)) {
    appendText(out, wellFormed(std::get<std::string>(cell)));
  } else {
    append(out, cell);
  }
}

}  // namespace kelvar_tool
