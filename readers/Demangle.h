#pragma once

#include <string>
#include <string_view>

namespace kelvar_readers {

/// A symbol as its programmer wrote it; a name that is not mangled stays as it is.
[[nodiscard]] std::string demangled(const std::string& symbol);

/// A function's name without its arguments, result and template arguments' depth: what a label has room for, and what
/// tools agree on. `(anonymous namespace)::smooth(float*, int)` is `smooth`.
[[nodiscard]] std::string plainName(std::string_view function);

}  // namespace kelvar_readers
