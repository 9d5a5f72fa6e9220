#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "PerKind.h"
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

/// Has the processor fetch what an item's detail of a kind answers.
template <auto detail>
void callRecord(const SummaryItemImpl& item) {
  __builtin_prefetch((item.*detail)());
}
inline constexpr PerKind<void (*)(const SummaryItemImpl&)> kCallRecord{
    {callRecord<&SummaryItemImpl::surveyDetail>, callRecord<&SummaryItemImpl::surveyVectorizationDetail>,
     callRecord<&SummaryItemImpl::suitabilityDetail>, callRecord<&SummaryItemImpl::correctnessDetail>,
     callRecord<&SummaryItemImpl::mapDetail>}};

/// Has the processor fetch what a walk over the records, at `index` now, is going to read `number` of: the item, then
/// its detail, then the detail's record. Asks the details.
template <class Record>
void callAhead(std::span<const Record> records, std::size_t index, const Number& number) {
  const auto at = [&](std::size_t ahead) -> const SummaryItemImpl* {
    return index + ahead < records.size() ? records[index + ahead].item : nullptr;
  };
  if (const SummaryItemImpl* const item = at(2 * kSortStep)) {
    __builtin_prefetch(&item->place());
    if (number.kind) item->prefetch(*number.kind);
  }
  if (!number.kind) return;
  if (const SummaryItemImpl* const item = at(kSortStep)) callDetail(item->summaryDetail(*number.kind));
  if (const SummaryItemImpl* const item = at(kSortStep / 2)) kCallRecord[*number.kind](*item);
}

/// Makes a number of each item its key.
template <class Record>
void readNumbers(std::span<Record> records, const Number& number) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    callAhead(std::span<const Record>(records), i, number);
    records[i].key = keyOf(number.read(*records[i].item));
  }
}

}  // namespace kelvar_2_1_7
