#pragma once

#include <string>
#include <string_view>

namespace kelvar_readers {

/// The demangled symbol; a name that is not mangled is returned unchanged.
[[nodiscard]] std::string demangled(const std::string& symbol);

/// A function's name without its arguments, result type, template arguments and anonymous namespaces: short enough for
/// a label, and the part that all tools agree on. `(anonymous namespace)::smooth(float*, int)` is `smooth`.
[[nodiscard]] std::string plainName(std::string_view function);

}  // namespace kelvar_readers
