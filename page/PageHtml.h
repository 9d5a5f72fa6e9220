#pragma once

#include <string>
#include <string_view>

#include "Model.h"

namespace kelvar_page {

/// A file holds no more rows than this.
inline constexpr int kMostEmbedded = 20000;

/// The page that asks a server for its data.
[[nodiscard]] std::string servedPage(std::string_view nonce);

/// The page with its data in it: the first rows by `ordering`, with their places in all orderings, their evidence and
/// sources. Needs nothing else, and allows itself no network. Leaves the view with the last ordering.
[[nodiscard]] std::string embeddedPage(const Model& model, const std::string& project, kelvar::SummaryMapping ordering,
                                       bool reverse);

/// What the page may do: run what carries the nonce, and ask where it came from. With `embedded`, ask nobody.
[[nodiscard]] std::string contentPolicy(std::string_view nonce, bool embedded);

/// 128 bits that nobody can guess, in hexadecimal digits. Throws std::system_error where the system has none.
[[nodiscard]] std::string unguessable();

}  // namespace kelvar_page
