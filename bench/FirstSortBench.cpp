// The first sort of a list, as a load leaves it and of one in no order; and the second sort.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "MemoryDetail.h"
#include "OfSize.h"
#include "Orderings.h"
#include "Program.h"
#include "items/SummaryItems.h"
#include "view/View.h"
#include "view/ViewSettings.h"

namespace kelvar_bench {

namespace {

using kelvar_2_1_7::SummaryItemImpl;
using kelvar_2_1_7::SummaryItems;

/// The list as a load leaves it.
class LoadedList {
 public:
  explicit LoadedList(std::size_t sites) : items_(program(sites).joined()) {
    for (const auto& item : items_) inOrder_.push_back(item.get());
  }

  SummaryItems& unsorted() {
    for (auto& item : items_) static_cast<void>(item.release());
    auto entry = items_.begin();
    for (SummaryItemImpl* const item : inOrder_) (entry++)->reset(item);
    return items_;
  }

 private:
  SummaryItems items_;
  std::vector<SummaryItemImpl*> inOrder_;
};

/// As many items as there are sites, each with a detail of every kind, so that few keys are equal. They are in random
/// order.
class FullList {
 public:
  explicit FullList(std::size_t sites) : project_(sites, kSeed) {
    details_.reserve(sites);
    for (const auto kind : kelvar_2_1_7::kAllKinds) {
      for (const Detail& detail : project_.details(kind)) {
        if (details_.size() < sites) details_.emplace_back(project_, detail, kEveryKind);
      }
    }
    for (MemoryDetail& detail : details_)
      items_.append(new SummaryItemImpl(nullptr, &detail, nullptr, items_.size() + 1));
  }

  SummaryItems& unsorted() {
    std::shuffle(items_.begin(), items_.end(), std::mt19937_64(kSeed));
    return items_;
  }

 private:
  static constexpr MemoryDetail::Kinds kEveryKind{{true, true, true, true, true}};

  GeneratedProject project_;
  std::vector<MemoryDetail> details_;
  SummaryItems items_;
};

/// Registers `sort`, applied to `prepare(unsorted)`.
template <class List, class Prepare, class Sort>
void registerSort(const std::string& name, std::size_t sites, Prepare prepare, Sort sort) {
  measure(
      name, sites, [=] { return ofSize<List>(sites).unsorted().size(); },
      [=] { return prepare(ofSize<List>(sites).unsorted()); }, sort);
}

/// A list and the view of it.
struct Viewed {
  SummaryItems* items;
  kelvar_2_1_7::View view;

  void sort(kelvar::SummaryMapping mapping) {
    kelvar_2_1_7::ViewSettings settings;
    settings.setMapping(mapping, false);
    SummaryItems hidden;
    view.rebuild(settings, *items, hidden);
  }
};

template <class List>
void registerOrdering(const std::string& name, std::size_t sites, const Ordering& ordering) {
  registerSort<List>(
      name + '/' + ordering.name, sites,
      [](SummaryItems& items) {
        return Viewed{&items, {}};
      },
      [mapping = ordering.mapping](Viewed& list) {
        list.sort(mapping);
        return list.items;
      });
  if (ordering.key == nullptr) return;
  registerSort<List>(
      name + "-pairs/" + ordering.name, sites,
      [key = ordering.key](SummaryItems& items) {
        std::vector<NumberedItem> numbers;
        for (const auto& item : items) numbers.push_back({key(*item), item.get()});
        return numbers;
      },
      [](std::vector<NumberedItem>& numbers) {
        std::stable_sort(numbers.begin(), numbers.end(),
                         [](const NumberedItem& a, const NumberedItem& b) { return a.number < b.number; });
        return &numbers;
      });
}

/// Of a list that was loaded and first sorted by another ordering.
void registerSecondSort(const std::string& name, kelvar::SummaryMapping first, std::size_t sites,
                        const Ordering& ordering) {
  if (ordering.mapping == first) return;
  registerSort<LoadedList>(
      name + '/' + ordering.name, sites,
      [first](SummaryItems& items) {
        Viewed list{&items, {}};
        list.sort(first);
        return list;
      },
      [mapping = ordering.mapping](Viewed& list) {
        list.sort(mapping);
        return list.items;
      });
}

template <class List>
void registerList(const std::string& name, std::size_t sites) {
  for (const Ordering& ordering : kOrderings) registerOrdering<List>(name, sites, ordering);
  registerSort<List>(
      name + "-keys/locator", sites,
      [](SummaryItems& items) {
        std::vector<PlacedItem> keys;
        for (const auto& item : items) keys.emplace_back(*item);
        return keys;
      },
      [](std::vector<PlacedItem>& keys) {
        std::stable_sort(keys.begin(), keys.end());
        return &keys;
      });
}

}  // namespace

void registerFirstSort(std::size_t sites) {
  registerList<LoadedList>("first", sites);
  registerList<FullList>("full-list", sites);
  for (const Ordering& ordering : kOrderings) {
    registerSecondSort("second", kelvar::kSortLocator, sites,
                       ordering);  // as in viewers that start with the default ordering
    registerSecondSort("second-after-label", kelvar::kSortLabel, sites, ordering);
  }
}

}  // namespace kelvar_bench
