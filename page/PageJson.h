#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvar_page {

/// Builds one JSON text that may lie inside a script element: what could end that is escaped, what is no UTF-8 becomes
/// U+FFFD, and so does a zero byte.
class PageJson {
 public:
  PageJson& beginObject(std::string_view key = {}) { return begin(key, '{'); }
  PageJson& endObject() { return end('}'); }
  PageJson& beginList(std::string_view key = {}) { return begin(key, '['); }
  PageJson& endList() { return end(']'); }
  PageJson& text(std::string_view key, std::string_view value);
  PageJson& number(std::string_view key, std::int64_t value);
  /// null for what is not finite.
  PageJson& number(std::string_view key, double value);
  PageJson& flag(std::string_view key, bool value);
  /// A value that is JSON already.
  PageJson& raw(std::string_view key, std::string_view json);

  [[nodiscard]] const std::string& json() const noexcept { return out_; }

 private:
  void start(std::string_view key);
  PageJson& begin(std::string_view key, char bracket);
  PageJson& end(char bracket);
  void appendText(std::string_view value);

  std::string out_;
  bool first_ = true;
};

}  // namespace kelvar_page
