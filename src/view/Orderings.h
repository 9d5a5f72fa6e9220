#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>

#include "digestio.h"
#include "items/SummaryItemImpl.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// What an ordering reads of an item, turned so that the lesser number stands first and with a stand-in for what is
/// missing. A NaN decides that neither of two items is before the other, whatever else they say.
struct Number {
  double (*read)(const SummaryItemImpl& item) = nullptr;
  std::optional<digestio::SummaryDataKind> kind = {};  // whose detail it is read of, if of any
  bool ofLoops = false;                                // all others have the same
  /// The same where no more is read than what kinds an item is of; null for other numbers.
  double (*ofKinds)(digestio::SummaryDetailKind detail, sitenotes::annotation_t::kind_t annotation) = nullptr;
};

/// The numbers of an ordering, in the order in which they are asked.
class Numbers {
 public:
  static constexpr std::size_t kMost = 3;

  constexpr Numbers(std::initializer_list<Number> numbers) noexcept : count_(numbers.size()) {
    std::copy(numbers.begin(), numbers.end(), numbers_.begin());
  }
  [[nodiscard]] constexpr std::size_t size() const noexcept { return count_; }
  [[nodiscard]] constexpr const Number& operator[](std::size_t index) const noexcept { return numbers_[index]; }
  [[nodiscard]] constexpr const Number* begin() const noexcept { return numbers_.data(); }
  [[nodiscard]] constexpr const Number* end() const noexcept { return numbers_.data() + count_; }
  /// The first; one that reads nothing, if there is none.
  [[nodiscard]] constexpr const Number& front() const noexcept { return numbers_.front(); }

 private:
  std::array<Number, kMost> numbers_{};
  std::size_t count_;
};

/// What decides between items whose numbers and labels are equal. Two items that come so far agree on it.
enum class Tie { kByLocator, kStays, kByLocatorUnlessLoop };

/// What a list is best sorted by first. Items that have a time or a label hardly share it with others: places are read
/// of those alone that do. Kinds are shared by many; numbers that are few or that most sites of a program lack, by
/// nearly all, so that the places of all come to be asked.
enum class Decider { kNumbers, kPlaceWithinKinds, kPlace };

/// One ordering: numbers first, the first that differs decides; then the label; then the tie.
struct Ordering {
  Numbers numbers = {};
  bool byLabel = false;
  Tie tie = Tie::kByLocator;
  Decider decider = Decider::kNumbers;

  /// The first number from the one at `index` on that may tell `item` from others that the numbers before leave equal
  /// with it; the end, if there is none.
  [[nodiscard]] std::size_t next(std::size_t index, const SummaryItemImpl& item) const noexcept {
    while (index < numbers.size() && isIdle(index, item)) ++index;
    return index;
  }
  /// Whether the number at `index` is read of the same detail as the one before it, and of the same items.
  [[nodiscard]] constexpr bool sharesDetail(std::size_t index) const noexcept {
    if (index == 0 || index >= numbers.size()) return false;
    const Number& number = numbers[index];
    const Number& before = numbers[index - 1];
    return number.kind && number.kind == before.kind && number.ofLoops == before.ofLoops;
  }
  /// Whether all numbers are of the analysis that the first one is of, if that is of any.
  [[nodiscard]] constexpr bool isOfOneAnalysis() const noexcept {
    const auto isOfFirst = [&](const Number& number) { return number.kind == numbers.front().kind; };
    return !numbers.front().kind || std::ranges::all_of(numbers, isOfFirst);
  }
  /// Whether the number at `index` is the same for all that the numbers before it do not tell from `item`.
  [[nodiscard]] bool isIdle(std::size_t index, const SummaryItemImpl& item) const noexcept {
    return numbers[index].ofLoops && item.detailKind() != digestio::kLoop;
  }
};

/// The ordering that a mapping selects; that by locator for a value without one.
[[nodiscard]] const Ordering& orderingOf(SummaryMapping mapping) noexcept;

/// The name that reports print for a mapping; empty where there is none. The names of an older enumeration: from the
/// vectorization orderings on they are not those of the orderings in use, and readers of reports know them so.
[[nodiscard]] const char* displayName(SummaryMapping mapping) noexcept;

/// Whether a tie of this item goes on to its place.
[[nodiscard]] bool goesByLocator(Tie tie, const SummaryItemImpl& item) noexcept;

/// What the ordering by locator reads of an item beyond its place.
struct Site {
  explicit Site(const SummaryItemImpl& item);  // asks a loop's details

  sitenotes::annotation_t::kind_t annotationKind;
  digestio::SummaryDetailKind detailKind;
  const std::string* label;
  double selfTime = 0;  // of loops, turned like a Number
  double totalTime = 0;
};

/// Whether `a` stands before `b` of the same place. No strict weak order: sites of three detail kinds and different
/// annotation kinds may stand in a circle.
[[nodiscard]] bool siteBefore(const Site& a, const Site& b) noexcept;

/// Whether `a` stands before `b` under `ordering`. Null items stand last.
[[nodiscard]] bool before(const Ordering& ordering, const SummaryItemImpl* a, const SummaryItemImpl* b);

}  // namespace kelvar_2_1_7
