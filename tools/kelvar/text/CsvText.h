#pragma once

#include <string>
#include <string_view>

#include "Cell.h"

namespace kelvar_tool {

inline constexpr std::string_view kCsvLineEnd = "\r\n";

/// One field after RFC 4180, in UTF-8. A text is quoted if it must be or is empty; a missing value is an empty field.
void appendField(std::string& out, const Cell& cell);

}  // namespace kelvar_tool
