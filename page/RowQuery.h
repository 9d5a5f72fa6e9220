#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace kelvar_page {

/// Which rows are wanted, and in which order. Defaults show the annotated sites, longest first.
struct RowQuery {
  kelvar::SummaryMapping ordering = kelvar::kSortSurveyCpuTime;
  bool reverse = false;
  std::string kind = "site";  ///< `all`, `site`, `function`, `loop`, or the name of an annotation kind
  int analysis = -1;          ///< only rows that this analysis says something of; -1: any
  std::string match = "all";  ///< `all`, `exact`, `moved`, `none`
  std::string text = {};      ///< in the label or the path, upper and lower case alike

  bool operator==(const RowQuery&) const = default;
};

/// The query in the words of an address: a key and its value. False where the value is none that the key takes.
[[nodiscard]] bool setField(RowQuery& query, const std::string& key, const std::string& value);

/// The rows of one query at a time, read by index. Ordering, kinds and analyses are the library's settings; what it has
/// no setting for is a list of the rows that are left.
class RowView {
 public:
  explicit RowView(kelvar::SummaryData& data) : data_(data) {}

  /// Sets the view unless it is as asked already.
  void set(const RowQuery& query);
  [[nodiscard]] int size() const;
  /// 0 <= index < size().
  [[nodiscard]] kelvar::SummaryItem& row(int index) const;

 private:
  void setSettings(const RowQuery& query);

  kelvar::SummaryData& data_;
  RowQuery query_;
  bool set_ = false;
  bool chosen_ = false;    // whether `left_` counts
  std::vector<int> left_;  // indexes of the library's view
};

}  // namespace kelvar_page
