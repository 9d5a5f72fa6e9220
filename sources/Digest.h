#pragma once

#include <string>
#include <string_view>

namespace kelvar_sources {

/// A short text that differs for files that differ: `xxh3:` and 32 hexadecimal digits. Tells an edit from none, and is
/// no protection against a forger.
[[nodiscard]] std::string digestOf(std::string_view bytes);

}  // namespace kelvar_sources
