#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "items/CallLine.h"
#include "view/KeySort.h"
#include "view/MergeSort.h"
#include "view/Orderings.h"
#include "view/SiteFigures.h"
#include "view/SortEntries.h"

namespace kelvar_2_1_7 {

/// Sorts records of one place as the ordering by locator says, and else as they stand.
template <class Record>
void sortBySite(std::span<Record> records) {
  if (records.size() == 2) {
    if (siteBefore(Site(*itemOf(records[1])), Site(*itemOf(records[0])))) std::swap(records[0], records[1]);
    return;
  }
  struct AtSite {
    Site site;
    Record record;
  };
  std::vector<AtSite> sites;
  std::vector<AtSite> buffer;
  sites.reserve(records.size());
  for (const Record& record : records) sites.push_back({Site(*itemOf(record)), record});
  mergeSort(std::span(sites), buffer, [](const AtSite& a, const AtSite& b) { return siteBefore(a.site, b.site); });
  for (std::size_t i = 0; i < records.size(); ++i) records[i] = sites[i].record;
}

/// Decides between items of one place that an ordering leaves equal: by annotation kind, detail kind, label, handle and
/// what the analyses say, so that the order of equal rows has no history. Items themselves are left alone.
class TieBreak {
 public:
  /// `byLocator`: on top of that, as the ordering by locator says.
  void sort(Entries entries, bool byLocator) {
    if (entries.size() != 2 || !decidedAtOnce(entries)) byKinds(entries);
    if (byLocator) sortBySite(entries);
  }
  /// Sorts by a number of each item, and hands on what it leaves equal.
  template <class Read, class Then>
  void byKey(Entries entries, Read read, const Then& then) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      callLabelAhead(entries, i);
      entries[i].key = read(*entries[i].item);
    }
    sortByKey(entries, numbers_);
    forEachTie(entries, then);
  }
  /// The same by label.
  template <class Then>
  void byLabel(Entries entries, const Then& then) {
    byLabelFrom(entries, 0, then);
  }

 private:
  /// Memory for the lists of one sort of key, one after the other.
  template <class Key>
  struct Room {
    std::vector<Keyed<Key>> keyed;
    std::vector<Keyed<Key>> buffer;
  };

  /// Most that share a place are two, and differ in what is near at hand. Leaves alone those that do not.
  static bool decidedAtOnce(Entries pair);
  void byKinds(Entries entries);
  void byHandle(Entries entries);
  void byFigures(Entries entries, std::span<const Figure> figures);
  void byWholeLabel(Entries entries);

  template <class Then>
  void byLabelFrom(Entries entries, std::size_t offset, const Then& then) {
    if (offset < kLabelWordsEnd) {
      return byKey(
          entries, [offset](const SummaryItemImpl& item) { return wordAt(item.labelText(), offset); },
          [this, offset, &then](Entries tied) { byLabelFrom(tied, offset + kWord, then); });
    }
    byWholeLabel(entries);
    forEachTie(entries, then);
  }

  static constexpr std::size_t kWord = sizeof(std::uint64_t);
  /// So far labels are compared word by word, and then as texts.
  static constexpr std::size_t kLabelWordsEnd = 3 * kWord;

  /// Labels lie in their items, or anywhere.
  static void callLabelAhead(Entries entries, std::size_t index) noexcept {
    if (index + 2 * kSortStep < entries.size()) callLine(&entries[index + 2 * kSortStep].item->labelText());
    if (index + kSortStep < entries.size()) callLine(entries[index + kSortStep].item->labelText().data());
  }

  /// Eight bytes of a text from `offset` on as a number that orders as they do; what it lacks counts as zero bytes.
  static std::uint64_t wordAt(std::string_view text, std::size_t offset) noexcept;

  std::vector<Entry> numbers_;
  Room<std::string_view> texts_;
};

}  // namespace kelvar_2_1_7
