#pragma once

#include <deque>
#include <random>

#include "items/SummaryItems.h"
#include "support/Fakes.h"

/// Items that often agree on what they are compared by. Their details live as long as this.
class RandomItems {
 public:
  /// With `numbersOnly` nothing is NaN; with `oneKind` all are annotated sites of one kind, so that every ordering is a
  /// strict weak order.
  explicit RandomItems(unsigned int seed, bool numbersOnly = false, bool oneKind = false)
      : engine_(seed), numbersOnly_(numbersOnly), oneKind_(oneKind) {}

  [[nodiscard]] std::unique_ptr<kelvar_2_1_7::SummaryItemImpl> item();
  /// `size` items, now and then a null among them.
  [[nodiscard]] kelvar_2_1_7::SummaryItems list(std::size_t size);

  /// 0 <= number < limit
  [[nodiscard]] int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine_); }
  [[nodiscard]] std::mt19937& engine() { return engine_; }

 private:
  [[nodiscard]] double number();

  std::mt19937 engine_;
  bool numbersOnly_;
  bool oneKind_;
  std::deque<support::FakeDetail> details_;
};

/// The items of a list, to tell later which stood where.
inline std::vector<const kelvar_2_1_7::SummaryItemImpl*> pointers(const kelvar_2_1_7::SummaryItems& items) {
  std::vector<const kelvar_2_1_7::SummaryItemImpl*> pointers;
  for (const auto& item : items) pointers.push_back(item.get());
  return pointers;
}
