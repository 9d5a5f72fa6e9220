#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <functional>
#include <string_view>

#include "toolbelt.h"

namespace kelvar_platform {

/// The paths that one reader has met. To ask the process for a path takes a lock, which readers on several threads
/// would pass to and fro at every value.
class KnownPaths {
 public:
  [[nodiscard]] const toolbelt::path_t& of(std::string_view text) {
    if (text == last_.get_text()) return last_;  // neighbours mostly lie in one file
    const auto known = paths_.find(text);
    if (known != paths_.end()) return last_ = known->second;
    last_ = toolbelt::path_t(text);
    paths_.emplace(last_.get_text(), last_);  // the text is the path's own, which stays
    return last_;
  }

 private:
  toolbelt::path_t last_;
  boost::unordered_flat_map<std::string_view, toolbelt::path_t, std::hash<std::string_view>> paths_;
};

}  // namespace kelvar_platform
