#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace kelvar_page {

/// Which rows to show, and in which order. By default the annotated sites, longest first.
struct RowQuery {
  kelvar::SummaryMapping ordering = kelvar::kSortSurveyCpuTime;
  bool reverse = false;
  std::string kind = "site";  ///< `all`, `site`, `function`, `loop`, or the name of an annotation kind
  int analysis = -1;          ///< only rows that this analysis reports; -1: any
  std::string match = "all";  ///< `all`, `exact`, `moved`, `none`
  std::string text = {};      ///< to find in the label or the path; ASCII case does not matter

  bool operator==(const RowQuery&) const = default;
};

/// Sets a field by its key and value in a URL. False for an unknown key or an invalid value.
[[nodiscard]] bool setField(RowQuery& query, const std::string& key, const std::string& value);

/// The rows of the current query, by index. Ordering, kinds and analyses are settings of the library's view; match and
/// text, which it cannot filter by, are a list of the rows that are left.
class RowView {
 public:
  explicit RowView(kelvar::SummaryData& data) : data_(data) {}

  /// Does nothing if the query is the current one.
  void set(const RowQuery& query);
  [[nodiscard]] int size() const;
  /// Requires: 0 <= index < size().
  [[nodiscard]] kelvar::SummaryItem& row(int index) const;

 private:
  void setSettings(const RowQuery& query);

  kelvar::SummaryData& data_;
  RowQuery query_;
  bool set_ = false;
  bool chosen_ = false;    // whether `left_` applies
  std::vector<int> left_;  // indices in the library's view
};

}  // namespace kelvar_page
