#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Token.h"

namespace kelvar_sources {

/// What a declaration up to its `{` defines.
struct Definition {
  enum class What { nothing, function, scope, initialiser } what = What::nothing;
  std::string name;
};

/// Reads the tokens from `first` up to the brace at `brace`. `partner` has the closing bracket of each opening one that
/// is closed before the brace.
[[nodiscard]] Definition definitionIn(const TokenList& list, const std::vector<std::uint32_t>& partner,
                                      std::size_t first, std::size_t brace);

}  // namespace kelvar_sources
