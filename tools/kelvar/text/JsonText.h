#pragma once

#include <string>
#include <string_view>

#include "Cell.h"

namespace kelvar_tool {

/// Appends one JSON value piece by piece. The output is always valid: a byte that is not UTF-8 becomes U+FFFD, and a
/// number that is not finite becomes null.
class JsonText {
 public:
  explicit JsonText(std::string& out) noexcept : out_(out) {}

  /// A key needs no escapes; it is empty for the outermost value and for an element of a list. Values at the first and
  /// second level begin a new line.
  void beginObject(std::string_view key) { begin(key, '{'); }
  void beginList(std::string_view key) { begin(key, '['); }
  void endObject() { end('}'); }
  void endList() { end(']'); }
  void value(std::string_view key, const Cell& cell);

 private:
  void start(std::string_view key);
  void begin(std::string_view key, char bracket);
  void end(char bracket);

  std::string& out_;
  int depth_ = 0;
  bool first_ = true;
};

}  // namespace kelvar_tool
