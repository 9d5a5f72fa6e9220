#include "Join.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "JoinedItems.h"
#include "SiteMatch.h"

namespace kelvar_2_1_7 {

namespace {

using Number = ResultSites::Number;

/// Meets the sites of a result with the items of a list by handle.
class Matching {
 public:
  Matching(JoinedItems& joined, ResultSites& incoming) : joined_(joined), incoming_(incoming) {}

  /// Merges each site into the item of its handle, or takes it in. `known` is what earlier joins found.
  void match(std::optional<MetSites> known) {
    std::vector<Number> numbers;
    met_.of = incoming_.recordedCount();
    if (known && known->of == met_.of) {
      met_.moved = std::move(known->moved);
      numbers = std::move(known->others);
    } else {
      numbers.resize(incoming_.recordedCount());
      std::iota(numbers.begin(), numbers.end(), Number{0});
    }
    const auto stays = [this](Number number) { return !incoming_.isTaken(number); };
    if (std::any_of(met_.moved.begin(), met_.moved.end(), stays)) lower(kApproximateMatchCurrent);

    std::size_t next = 0;
    const auto meetRecordedBefore = [&](Number end) {
      for (; next < numbers.size() && numbers[next] < end; ++next) {
        callRecordedAhead(numbers, next);
        meetRecorded(numbers[next]);
      }
    };
    for (std::size_t index = 0; index < incoming_.items().size(); ++index) {
      callItemsAhead(index);
      meetRecordedBefore(incoming_.placeOf(index));
      meet(incoming_.items().begin()[static_cast<std::ptrdiff_t>(index)]);
    }
    meetRecordedBefore(incoming_.recordedCount());
  }

  /// How well the worst of them matched.
  [[nodiscard]] SummaryDataStatus level() const noexcept { return level_; }
  [[nodiscard]] MetSites takeMet() noexcept { return std::move(met_); }

 private:
  void meet(SummaryItems::value_type& item) {
    if (!item) return;
    SummaryItemImpl* const known = find(item->handle());
    if (known == nullptr) return joined_.append(item), lower(kNoMatchCurrent);
    compareLines(*known, item->place());
    joined_.merge(*known, *item);
  }

  void meetRecorded(Number number) {
    const RecordedSite& site = incoming_.recorded()[number];
    SummaryItemImpl* const known = incoming_.isTaken(number) ? nullptr : find(site.handle);
    if (known != nullptr && known->gainsNothingFrom(site)) {
      if (!compareLines(*known, site.place)) met_.moved.push_back(number);
      return;
    }
    met_.others.push_back(number);
    if (incoming_.isTaken(number)) return;
    if (known == nullptr) {
      joined_.make(incoming_.recorded().owner(), site, incoming_.known());
      return lower(kNoMatchCurrent);
    }
    compareLines(*known, site.place);
    joined_.merge(*known, incoming_.itemOf(number));
  }

  [[nodiscard]] SummaryItemImpl* find(unsigned long handle) const {
    return handle != 0 ? joined_.byHandle().find(handle) : nullptr;
  }
  bool compareLines(const SummaryItemImpl& known, const sitenotes::locator_t& place) {
    const bool isSame = known.place().get_line() == place.get_line();
    if (!isSame) lower(kApproximateMatchCurrent);
    return isSame;
  }
  void lower(SummaryDataStatus level) noexcept { level_ = std::min(level_, level); }

  /// Items and their sites lie anywhere in memory: they are called for some steps ahead, one step of the way at a time.
  void callItemsAhead(std::size_t index) {
    const SummaryItems& items = incoming_.items();
    if (index + 3 * kStep < items.size()) SummaryItems::callMarks(items[index + 3 * kStep]);
    if (index + 2 * kStep < items.size() && items[index + 2 * kStep] != nullptr) {
      joined_.byHandle().prefetch(items[index + 2 * kStep]->handle());
    }
    if (index + kStep < items.size() && items[index + kStep] != nullptr) {
      SummaryItems::call(find(items[index + kStep]->handle()));
    }
  }
  void callRecordedAhead(const std::vector<Number>& numbers, std::size_t index) const {
    const auto siteAt = [&](std::size_t at) -> const RecordedSite& { return incoming_.recorded()[numbers[at]]; };
    if (index + 3 * kStep < numbers.size()) callLine(&siteAt(index + 3 * kStep).handle);
    if (index + 2 * kStep < numbers.size()) joined_.byHandle().prefetch(siteAt(index + 2 * kStep).handle);
    if (index + kStep < numbers.size()) SummaryItems::callMarks(find(siteAt(index + kStep).handle));
  }

  static constexpr std::size_t kStep = SummaryItems::kStep;

  JoinedItems& joined_;
  ResultSites& incoming_;
  SummaryDataStatus level_ = kExactMatchCurrent;
  MetSites met_;
};

/// Whether two neighbours of the joined list stand for one site: one of two places may be unknown.
bool sameSite(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return sameSortOfSite(a, b) && a.labelText() == b.labelText() &&
         (a.place().is_null() != b.place().is_null() || sameLeaf(a.place(), b.place())) && !seenApart(a, b);
}

}  // namespace

SummaryDataStatus join(SummaryItems& list, ResultSites& incoming, JoinMemory& memory) {
  std::optional<MetSites> known = std::exchange(memory.met, std::nullopt);
  JoinedItems joined(list, memory);
  Matching matching(joined, incoming);
  matching.match(std::move(known));
  { const ResultSites gone(std::move(incoming)); }  // a large part of the memory that a result takes
  joined.fold(sameSite);
  joined.settle(matching.takeMet());
  return matching.level();
}

}  // namespace kelvar_2_1_7
