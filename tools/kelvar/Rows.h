#pragma once

#include <re2/re2.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Columns.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

/// A regular expression on label or file. RE2 takes linear time for any pattern and any label.
class RowPattern {
 public:
  /// Throws UsageError, with `option` before the sentence, for what is no expression.
  RowPattern(std::string_view option, const std::string& text);

  /// Whether it is found in the label, or in the path where the site is or was.
  [[nodiscard]] bool finds(const Row& row) const;
  [[nodiscard]] const std::string& text() const noexcept { return expression_->pattern(); }

 private:
  std::shared_ptr<const re2::RE2> expression_;
};

/// Which rows of the view are wanted. What is taken is in the view's order.
struct RowChoice {
  std::optional<RowPattern> pattern;
  std::optional<int> top;  ///< at most that many, of those that the pattern finds

  [[nodiscard]] bool all() const noexcept { return !pattern && !top; }
};

void forEachRow(const kelvar::SummaryData& data, const RowChoice& choice, const std::function<void(const Row&)>& take);

}  // namespace kelvar_tool
