#pragma once

#include <string_view>

namespace kelvar_page {

/// The files of front/: the page, with marks such as @STYLE@ to fill in, its style and its script.
extern const std::string_view kFrontPage;
extern const std::string_view kFrontStyle;
extern const std::string_view kFrontScript;

}  // namespace kelvar_page
