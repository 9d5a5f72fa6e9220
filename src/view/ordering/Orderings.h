#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>

#include "items/SummaryItemImpl.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// What an ordering reads of an item, negated where the greatest comes first, and with a stand-in for a missing value.
/// A NaN decides that neither of two items is before the other, whatever else they say.
struct SortKey {
  double (*read)(const SummaryItemImpl& item) = nullptr;
  std::optional<digestio::SummaryDataKind> kind = {};  // whose detail it is read from, if from any
};

/// The keys of an ordering, in the order in which they decide.
class SortKeys {
 public:
  static constexpr std::size_t kMost = 3;

  constexpr SortKeys(std::initializer_list<SortKey> keys) noexcept : count_(keys.size()) {
    std::copy(keys.begin(), keys.end(), keys_.begin());
  }
  [[nodiscard]] constexpr std::size_t size() const noexcept { return count_; }
  [[nodiscard]] constexpr const SortKey& operator[](std::size_t index) const noexcept { return keys_[index]; }
  [[nodiscard]] constexpr const SortKey* begin() const noexcept { return keys_.data(); }
  [[nodiscard]] constexpr const SortKey* end() const noexcept { return keys_.data() + count_; }

 private:
  std::array<SortKey, kMost> keys_{};
  std::size_t count_;
};

/// Whether items that are equal on all keys are ordered by locator.
enum class ThenByLocator { kYes, kNo, kUnlessLoop };

/// One ordering: keys first, the first that differs decides; then the label; then the locator. What remains equal is
/// for TieBreak.
struct Ordering {
  SortKeys keys = {};
  bool byLabel = false;
  ThenByLocator thenByLocator = ThenByLocator::kYes;
};

/// The ordering that a mapping selects; that by locator for a value without one.
[[nodiscard]] const Ordering& orderingOf(SummaryMapping mapping) noexcept;

/// The name that reports print for a mapping; empty where there is none. These are the names of an older enumeration:
/// from the vectorization orderings on they are wrong, and kept because programs that read reports rely on them.
[[nodiscard]] const char* displayName(SummaryMapping mapping) noexcept;

/// Whether this item and those that are equal to it are ordered by locator. Items that are equal agree on it.
[[nodiscard]] bool goesByLocator(ThenByLocator thenByLocator, const SummaryItemImpl& item);

/// What the ordering by locator reads of an item besides its place.
struct SiteKey {
  /// `withTimes`: also what decides between loops of different annotation kinds, which asks their details.
  SiteKey(const SummaryItemImpl& item, bool withTimes);

  sitenotes::annotation_t::kind_t annotationKind;
  digestio::SummaryDetailKind detailKind;
  const std::string* label;
  double selfTime = 0;  // of loops, negated as in a SortKey
  double totalTime = 0;
};

/// Whether `a` is before `b` at the same place. Not a strict weak order: three items of different detail kinds and
/// annotation kinds may form a cycle.
[[nodiscard]] bool isBeforeAtPlace(const SiteKey& a, const SiteKey& b) noexcept;

/// Whether `a` is before `b` under `ordering`. Null items come last.
[[nodiscard]] bool isBefore(const Ordering& ordering, const SummaryItemImpl* a, const SummaryItemImpl* b);

}  // namespace kelvar_2_1_7
