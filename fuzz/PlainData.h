#pragma once

#include <array>
#include <deque>
#include <string>
#include <vector>

#include "items/SummaryItems.h"
#include "support/Fakes.h"

/// The data object in its plain form, step by step: plain joins, and a view that moves items one by one and keeps only
/// the two lists between rebuilds. The object is compared with it.
class PlainData {
 public:
  explicit PlainData(sitenotes::database_t& database);

  void add(const support::Collection& collection, sitenotes::database_t* state);

  void enableKind(int kind, bool enable);
  void enableDetailKind(int kind, bool enable);
  void enableAnnotationKind(int kind, bool enable);
  void order(kelvar_2_1_7::SummaryMapping mapping, bool reverse);

  /// The view.
  [[nodiscard]] kelvar_2_1_7::SummaryItems& view();
  /// All items, shown or not.
  [[nodiscard]] std::size_t count() const { return visible_.size() + hidden_.size(); }
  [[nodiscard]] bool has(digestio::SummaryDataKind kind) const;
  [[nodiscard]] int status(int kind) const { return statuses_.at(static_cast<std::size_t>(kind)); }

 private:
  template <class Shown>
  void hideUnless(Shown shown);
  [[nodiscard]] bool passesKinds(const kelvar_2_1_7::SummaryItemImpl& item) const;
  [[nodiscard]] bool passesDetailKinds(const kelvar_2_1_7::SummaryItemImpl& item) const;

  std::deque<support::FakeDetail> details_;  // the items point to them
  kelvar_2_1_7::SummaryItems visible_;
  kelvar_2_1_7::SummaryItems hidden_;
  std::array<int, 5> statuses_{};
  std::array<bool, 5> kinds_;
  std::array<bool, 3> detailKinds_;
  std::array<bool, 19> annotationKinds_;
  kelvar_2_1_7::SummaryMapping mapping_ = kelvar_2_1_7::kSortLocator;
  bool reverse_ = false;
  bool stale_ = true;
};
