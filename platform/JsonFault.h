#pragma once

#include <cstddef>
#include <string_view>

namespace kelvar_platform {

/// What may stand between any two tokens.
inline constexpr std::string_view kJsonBlanks = " \t\n\r";

/// Where a text stops being JSON, and what was expected there.
struct JsonFault {
  std::size_t byte;
  const char* expected;
};

/// The first fault as far as bytes, texts and brackets tell: what the parser finds before it looks at values, and then
/// says without a place. Nested however deep, a text takes a bit for each bracket that is open.
[[nodiscard]] JsonFault firstFault(std::string_view json);

}  // namespace kelvar_platform
