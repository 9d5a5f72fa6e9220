#pragma once

#include <string_view>

namespace kelvar_page {

/// The front end as it lies in front/: the page with @NAMES@ where the rest belongs, its style and its script.
extern const std::string_view kFrontPage;
extern const std::string_view kFrontStyle;
extern const std::string_view kFrontScript;

}  // namespace kelvar_page
