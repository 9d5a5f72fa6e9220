#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvar_page {

/// Builds a JSON text that is safe inside a script element: characters that could end the element are escaped. Zero
/// bytes and bytes that are no UTF-8 become U+FFFD.
class PageJson {
 public:
  PageJson& beginObject(std::string_view key = {}) { return begin(key, '{'); }
  PageJson& endObject() { return end('}'); }
  PageJson& beginList(std::string_view key = {}) { return begin(key, '['); }
  PageJson& endList() { return end(']'); }
  PageJson& text(std::string_view key, std::string_view value);
  PageJson& number(std::string_view key, std::int64_t value);
  /// Writes null for a value that is not finite.
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
