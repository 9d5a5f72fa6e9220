#pragma once

#include <string>
#include <string_view>

namespace kelvar_sources {

/// A digest to notice edits: `xxh3:` and 32 hexadecimal digits. Not cryptographic: collisions can be made on purpose.
[[nodiscard]] std::string digestOf(std::string_view bytes);

}  // namespace kelvar_sources
