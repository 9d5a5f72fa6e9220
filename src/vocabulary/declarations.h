/// How the library asks what a suite may declare in more than one way: with or without `const`, a text as an object or
/// as a pointer.
#pragma once

#include <sitenotes.h>
#include <toolbelt.h>

#include <string>
#include <string_view>
#include <utility>

namespace kelvar_2_1_7 {

/// Negative, zero or positive as `a` comes before, at or after `b` in the suite's own order of places.
[[nodiscard]] inline int displayOrder(const sitenotes::locator_t& a, const sitenotes::locator_t& b) {
  return const_cast<sitenotes::locator_t&>(a).display_order(b);
}

/// Calls `use(leaf)` with the last component of the place's file, a std::string_view that is valid during the call.
template <class Use>
decltype(auto) withLeaf(const sitenotes::locator_t& place, const Use& use) {
  // A suite may declare get_leaf without const. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  toolbelt::path_t file = place.get_file();
  return use(std::string_view(file.get_leaf()));
}

[[nodiscard]] inline std::string textOf(const char* text) {
  return text != nullptr ? text : "";
}
[[nodiscard]] inline std::string textOf(std::string text) {
  return text;
}

}  // namespace kelvar_2_1_7
