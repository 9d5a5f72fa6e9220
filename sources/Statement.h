#pragma once

#include <cstddef>
#include <optional>

#include "Brackets.h"
#include "Token.h"

namespace kelvar_sources {

/// The last token of the statement that begins with the first code at or behind `from`, as seen from `branch`: a whole
/// loop, an `if` with its `else`, a block, or up to a `;`. None where the code ends before the statement does.
[[nodiscard]] std::optional<std::size_t> statementEnd(const TokenList& list, const Brackets& brackets, std::size_t from,
                                                      std::uint32_t branch);

}  // namespace kelvar_sources
