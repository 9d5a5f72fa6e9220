#pragma once

#include <cstddef>
#include <string_view>

namespace kelvar_platform {

/// The characters that are allowed between any two tokens.
inline constexpr std::string_view kJsonBlanks = " \t\n\r";

/// Where a text stops being JSON, and what was expected there or what is wrong with it. One of the two is empty.
struct JsonFault {
  std::size_t byte;
  const char* expected;
  const char* problem = "";
};

/// The first fault in the bytes, strings and brackets of `json`: what the parser finds before it looks at values, and
/// reports without a place. Takes one bit of memory for each open bracket.
[[nodiscard]] JsonFault firstFault(std::string_view json);

}  // namespace kelvar_platform
