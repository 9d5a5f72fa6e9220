#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Token.h"

namespace kelvar_sources {

/// What the declaration before a `{` defines.
struct Definition {
  enum class What { nothing, function, scope, initialiser } what = What::nothing;
  std::string name;
};

/// Reads the tokens from `first` up to the brace at `brace`. `partner` holds the closing bracket of each opening one
/// between them.
[[nodiscard]] Definition definitionIn(const TokenList& list, const std::vector<std::uint32_t>& partner,
                                      std::size_t first, std::size_t brace);

}  // namespace kelvar_sources
