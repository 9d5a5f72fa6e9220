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
  /// Throws UsageError, which names `option`, if it is not a valid expression.
  RowPattern(std::string_view option, const std::string& text);

  /// Whether it matches in the label, or in a path of the site, present or former.
  [[nodiscard]] bool finds(const Row& row) const;
  [[nodiscard]] const std::string& text() const noexcept { return expression_->pattern(); }

 private:
  std::shared_ptr<const re2::RE2> expression_;
};

/// The rows to print, a selection of the view in its order.
struct RowChoice {
  std::optional<RowPattern> pattern;
  std::optional<int> top;  ///< at most that many rows that match the pattern

  [[nodiscard]] bool all() const noexcept { return !pattern && !top; }
};

void forEachRow(const kelvar::SummaryData& data, const RowChoice& choice, const std::function<void(const Row&)>& take);

}  // namespace kelvar_tool
