#pragma once

#include <string>
#include <string_view>

namespace kelvar_sources {

/// What a comment of ours says behind `kelvar:`.
struct MarkerRemark {
  std::string word;   ///< `parallel`, `end`
  std::string label;  ///< empty: none
};

[[nodiscard]] MarkerRemark remarkIn(std::string_view text);

}  // namespace kelvar_sources
