#pragma once

#include <string>
#include <string_view>

namespace kelvar_sources {

/// The content of a comment after `kelvar:`.
struct MarkerRemark {
  std::string word;   ///< `parallel`, `end`
  std::string label;  ///< empty if there is none
};

[[nodiscard]] MarkerRemark remarkIn(std::string_view text);

}  // namespace kelvar_sources
