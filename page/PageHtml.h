#pragma once

#include <string>
#include <string_view>

#include "Model.h"

namespace kelvar_page {

/// The most rows in a page that is a file of its own.
inline constexpr int kMostEmbedded = 20000;

/// The page that asks a server for its data.
[[nodiscard]] std::string servedPage(std::string_view nonce);

/// The page with its data in it: the first rows by `ordering`, their positions in all orderings, their evidence and
/// sources. Needs no other file and no network. Leaves the view in the last ordering.
[[nodiscard]] std::string embeddedPage(const Model& model, const std::string& project, kelvar::SummaryMapping ordering,
                                       bool reverse);

/// Where the page gets its data: from its server, or from its own file.
enum class PageData { served, embedded };

/// The page's content security policy. It allows scripts and styles with the nonce, and for a served page requests to
/// its own server.
[[nodiscard]] std::string contentPolicy(std::string_view nonce, PageData data);

/// 128 random bits as hexadecimal digits. Throws std::system_error when the system has no randomness.
[[nodiscard]] std::string unguessable();

}  // namespace kelvar_page
