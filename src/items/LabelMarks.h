#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace kelvar_2_1_7 {

/// What passes over a million sites ask of a label, made once.
struct LabelMarks {
  bool isThere = false;
  bool isTooDeep = false;  // it says that the site stands for all that was not resolved any deeper
  std::uint32_t hash = 0;

  LabelMarks() noexcept = default;
  explicit LabelMarks(std::string_view label) noexcept
      : isThere(!label.empty()),
        isTooDeep(label == "__too deep__"),
        hash(static_cast<std::uint32_t>(std::hash<std::string_view>()(label))) {}
};

}  // namespace kelvar_2_1_7
