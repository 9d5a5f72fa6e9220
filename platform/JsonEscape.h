#pragma once

#include <string>
#include <string_view>

namespace kelvar_platform {

/// Appends `value` to `out` as JSON writes a text: in quotes, with what must be escaped escaped.
void appendJsonText(std::string& out, std::string_view value);

}  // namespace kelvar_platform
