#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "digestio.h"
#include "items/CallLine.h"
#include "items/ItemArena.h"
#include "items/KindMarks.h"
#include "items/SummaryItemImpl.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// A list that owns its items. Entries may be null; every operation survives that.
class SummaryItems {
 public:
  using value_type = std::unique_ptr<SummaryItemImpl>;

  SummaryItems() noexcept = default;
  SummaryItems(SummaryItems&&) noexcept = default;
  SummaryItems& operator=(SummaryItems&&) noexcept = default;
  ~SummaryItems() { clear(); }

  [[nodiscard]] std::size_t size() const noexcept { return items_.size(); }
  [[nodiscard]] bool empty() const noexcept { return items_.empty(); }
  [[nodiscard]] SummaryItemImpl* operator[](std::size_t index) const noexcept { return items_[index].get(); }
  [[nodiscard]] auto begin() noexcept { return items_.begin(); }
  [[nodiscard]] auto end() noexcept { return items_.end(); }
  [[nodiscard]] auto begin() const noexcept { return items_.begin(); }
  [[nodiscard]] auto end() const noexcept { return items_.end(); }

  /// How many items ahead of a walk memory is called for.
  static constexpr std::size_t kStep = 16;
  /// Calls an item into the cache that a walk over the list is about to come to: a list is mostly walked in another
  /// order than that of its memory.
  void callAhead(std::size_t index) const noexcept {
    if (index + kStep < items_.size()) call(items_[index + kStep].get());
  }
  /// The same for what joins ask of every item alone.
  void callMarksAhead(std::size_t index) const noexcept {
    if (index + kStep < items_.size()) callMarks(items_[index + kStep].get());
  }
  /// Calls one item into the cache, if it is there.
  static void call(const SummaryItemImpl* item) noexcept { call<sizeof(SummaryItemImpl)>(item); }
  static void callMarks(const SummaryItemImpl* item) noexcept { call<kMarks>(item); }

  void reserve(std::size_t count) { items_.reserve(count); }
  void append(value_type item) { items_.push_back(std::move(item)); }
  /// Makes an item of these arguments behind the others.
  template <class... Arguments>
  SummaryItemImpl& make(Arguments&&... arguments) {
    items_.push_back(arena_.make(std::forward<Arguments>(arguments)...));
    return *items_.back();
  }
  /// The same for an item that is to outlast others, which are merged: such items have memory of their own, and hardly
  /// any of it lies idle once they stand in another list.
  template <class... Arguments>
  SummaryItemImpl& makeLasting(Arguments&&... arguments) {
    items_.push_back(lasting_.make(std::forward<Arguments>(arguments)...));
    return *items_.back();
  }
  /// Makes an item beside the others that is not of the list yet.
  template <class... Arguments>
  [[nodiscard]] value_type makeApart(Arguments&&... arguments) {
    return arena_.make(std::forward<Arguments>(arguments)...);
  }
  /// Drops the entries from `count` on, with their items.
  void truncate(std::size_t count) noexcept {
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(count), items_.end());
  }
  void clear() noexcept {
    for (std::size_t index = 0; index < items_.size(); ++index) {
      callAhead(index);
      items_[index].reset();
    }
    items_.clear();
  }
  /// Takes these entries in place of its own. Memory for new items stays as it is.
  void replace(std::vector<value_type> entries) noexcept { items_.swap(entries); }
  void swap(SummaryItems& other) noexcept {
    std::swap(arena_, other.arena_);
    std::swap(lasting_, other.lasting_);
    items_.swap(other.items_);
  }

  /// Orders the list. Safe for orderings that are no strict weak order: terminates in O(n log n) with
  /// the same items. What an ordering leaves undecided stands as SummaryMapping says. Either done or, when an
  /// exception passes, not begun. Defined with the view.
  void sort(SummaryMapping mapping);
  /// The same for the entries from `begin` up to `end` alone.
  void sort(SummaryMapping mapping, std::size_t begin, std::size_t end);
  /// An item of a list by place, with what orderings ask first, so that most items need not be touched.
  struct ItemAtPlace {
    SummaryItemImpl* item;
    KindSet details;  // the kinds that it has a detail of
    SiteKinds kinds;
    std::uint32_t place;  // the same for items of one place
  };
  /// The whole list, faster: its items are those of `byPlace` that are shown, all of them if `areAllShown`. Asks
  /// details for numbers too that come to decide nothing. Orderings by label gain that ties stand by place already.
  void sort(SummaryMapping mapping, std::span<const ItemAtPlace> byPlace, bool areAllShown);
  /// The same for a list without null entries in which all but those at `loose`, ascending slots, stand in order
  /// already. Answers by slot whether what stands there was loose or has lost the one before it: two neighbours of
  /// which neither has were neighbours before. Not for orderings by label.
  std::vector<bool> sortIn(SummaryMapping mapping, const std::vector<std::size_t>& loose);
  /// Of a sorted list, the entries from the first up to the second: those that the ordering's numbers do not tell from
  /// an item of which no analysis says anything.
  [[nodiscard]] std::pair<std::size_t, std::size_t> unmeasured(SummaryMapping mapping) const;
  /// The items of two lists, which are one to the viewer, by place and what else decides between equals.
  static std::vector<ItemAtPlace> byPlace(const SummaryItems& visible, const SummaryItems& hidden);

  /// Folds the items that stand for one site, as a result's sites are folded: see ResultSites. When an exception
  /// passes, the list is empty.
  void exactMerge(digestio::SummaryDataKind kind);

  /// The list as a fixed-width table, with the column groups of the kinds that are asked for. Defined with the view.
  [[nodiscard]] std::string asString(bool verbose, bool survey, bool surveyVectorization, bool suitability,
                                     bool correctness, bool map) const;

 private:
  /// The items from `begin` up to `end` in the order of the records. Null entries stand last.
  template <class Records>
  void takeOrder(const Records& records, std::size_t begin, std::size_t end) noexcept {
    takeOrder(records, begin, end, [](const auto& record) { return record.item; });
  }
  template <class Records, class ItemOf>
  void takeOrder(const Records& records, std::size_t begin, std::size_t end, const ItemOf& itemOf) noexcept {
    for (std::size_t i = begin; i < end; ++i) {
      static_cast<void>(items_[i].release());  // every item changes its owner at most once
      items_[i].reset(i - begin < records.size() ? itemOf(records[i - begin]) : nullptr);
    }
  }

  static constexpr std::size_t kCacheLine = 64;
  static constexpr std::size_t kMarks = 72;  // up to the hash of the label

  /// Its first `Size` bytes, which need not begin where a cache line does.
  template <std::size_t Size>
  static void call(const SummaryItemImpl* item) noexcept {
    if (item == nullptr) return;
    const char* const bytes = reinterpret_cast<const char*>(item);
    for (std::size_t line = 0; line < Size; line += kCacheLine) callLine(bytes + line);
    callLine(bytes + Size - 1);
  }

  ItemArena arena_;
  ItemArena lasting_;
  std::vector<value_type> items_;
};

}  // namespace kelvar_2_1_7
