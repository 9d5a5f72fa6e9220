#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace kelvar_tool {

/// One value of a report; the first alternative if there is none. Texts may hold any bytes.
using Cell = std::variant<std::monostate, std::string, bool, std::int64_t, std::uint64_t, double>;

[[nodiscard]] inline bool isMissing(const Cell& cell) noexcept {
  return std::holds_alternative<std::monostate>(cell);
}
[[nodiscard]] inline bool isText(const Cell& cell) noexcept {
  return std::holds_alternative<std::string>(cell);
}

/// A number in the fewest digits that read back as the same number: `2.5`, `1e+22`, `nan`, `-inf`; `true` or `false`; a
/// text unchanged; nothing if there is no value.
void append(std::string& out, const Cell& cell);

}  // namespace kelvar_tool
