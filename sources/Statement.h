#pragma once

#include <cstddef>
#include <optional>

#include "Brackets.h"
#include "Token.h"

namespace kelvar_sources {

/// The last token of the statement that begins at the first code from `from` on, in this preprocessor branch: a whole
/// loop, an `if` with its `else`, a block, or up to a `;`. None if the code ends before the statement.
[[nodiscard]] std::optional<std::size_t> statementEnd(const TokenList& list, const Brackets& brackets, std::size_t from,
                                                      std::uint32_t branch);

}  // namespace kelvar_sources
