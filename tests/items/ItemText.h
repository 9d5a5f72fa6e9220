#pragma once

#include <deque>
#include <string>

#include "items/SummaryItems.h"
#include "support/Fakes.h"

/// Lists of items written as text, one item a line:
///
///     @7 solver a/x.cpp:12 k2 s5        an annotation, its handle, annotation kind and status
///     @7 solver a/x.cpp:12 survey map   an annotated site with details
///     - solver a/x.cpp:12 k2 d1 survey  a site that only an analysis knows, with its detail kind
///     -7 solver a/x.cpp:12 survey       the same with a handle
///
/// `_` is an empty label or place, `__too_deep__` for the label with blanks, `selected` for the user's mark.
class ItemText {
 public:
  [[nodiscard]] kelvar_2_1_7::SummaryItems list(const std::string& text);
  [[nodiscard]] std::unique_ptr<kelvar_2_1_7::SummaryItemImpl> item(const std::string& line);

 private:
  std::deque<support::FakeDetail> details_;  // the items point to them
};
