#pragma once

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>

#include "PerKind.h"
#include "items/CallLine.h"
#include "view/Orderings.h"
#include "view/SiteFigures.h"
#include "view/SortEntries.h"

namespace kelvar_2_1_7 {

/// The key of what is not a number. No ordering puts it before or behind anything; so that it cannot come between
/// others it stands last.
inline constexpr std::uint64_t kUnordered = std::numeric_limits<std::uint64_t>::max();

/// The number as a key that orders like it. Zeros are equal.
[[nodiscard]] inline std::uint64_t keyOf(double number) noexcept {
  return std::isnan(number) ? kUnordered : orderedBits(number + 0.0);
}

/// The key that an ordering's number gives an item; 0 where the ordering has none.
[[nodiscard]] inline std::uint64_t keyOf(const Number& number, const SummaryItemImpl& item) {
  return number.read != nullptr ? keyOf(number.read(item)) : 0;
}

/// Has the processor fetch what an item's detail of a kind answers.
template <auto detail>
void callRecord(const SummaryItemImpl& item) {
  callLine((item.*detail)());
}
inline constexpr PerKind<void (*)(const SummaryItemImpl&)> kCallRecord{
    {callRecord<&SummaryItemImpl::surveyDetail>, callRecord<&SummaryItemImpl::surveyVectorizationDetail>,
     callRecord<&SummaryItemImpl::suitabilityDetail>, callRecord<&SummaryItemImpl::correctnessDetail>,
     callRecord<&SummaryItemImpl::mapDetail>}};

/// Which item stands at an index; null past the end.
template <class Record>
[[nodiscard]] auto itemsOf(std::span<Record> records) noexcept {
  return [records](std::size_t index) -> const SummaryItemImpl* {
    return index < records.size() ? itemOf(records[index]) : nullptr;
  };
}

/// Has the processor fetch what a walk over items, at `index` now, is going to read `number` of: the item, then where
/// its detail is, then the detail, then the detail's record. Asks the details.
template <class ItemAt>
void callNumberAhead(std::size_t index, const Number& number, const ItemAt& itemAt) {
  if (const SummaryItemImpl* const item = itemAt(index + 2 * kSortStep)) callLine(&item->place());
  if (!number.kind) return;
  if (const SummaryItemImpl* const item = itemAt(index + kSortStep + kSortStep / 2)) item->prefetch(*number.kind);
  if (const SummaryItemImpl* const item = itemAt(index + kSortStep); item != nullptr && item->hasDetail(*number.kind)) {
    callDetail(item->summaryDetail(*number.kind));
  }
  if (const SummaryItemImpl* const item = itemAt(index + kSortStep / 2)) {
    kCallRecord[*number.kind](*item);
  }
}

/// Of records that stand by the numbers of an ordering, the first that these do not tell from `item`, and the end of
/// those.
template <class Records, class ItemOf>
[[nodiscard]] auto equalByNumbers(const Ordering& ordering, const SummaryItemImpl& item, Records& records,
                                  const ItemOf& itemOf) {
  const auto orderOf = [&](const auto& record) {
    std::strong_ordering order = std::strong_ordering::equal;
    for (std::size_t i = 0; i < ordering.numbers.size() && std::is_eq(order); ++i) {
      order = keyOf(ordering.numbers[i], *itemOf(record)) <=> keyOf(ordering.numbers[i], item);
    }
    return order;
  };
  const auto isBefore = [&](const auto& record) { return std::is_lt(orderOf(record)); };
  const auto isEqual = [&](const auto& record) { return std::is_eq(orderOf(record)); };
  const auto first = std::partition_point(records.begin(), records.end(), isBefore);
  return std::pair(first, std::partition_point(first, records.end(), isEqual));
}

/// Makes a number of each item its key.
template <class Record>
void readNumbers(std::span<Record> records, const Number& number) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    callNumberAhead(i, number, itemsOf(records));
    records[i].key = keyOf(number.read(*records[i].item));
  }
}

}  // namespace kelvar_2_1_7
