#pragma once

#include <string_view>

namespace kelvar_page {

/// Whether `tail` is all of the path or whole components at its end: `src/a.cpp` of `/home/me/src/a.cpp`.
[[nodiscard]] inline bool isPathTail(std::string_view tail, std::string_view path) noexcept {
  return path.ends_with(tail) && (path.size() == tail.size() || path[path.size() - tail.size() - 1] == '/');
}

}  // namespace kelvar_page
