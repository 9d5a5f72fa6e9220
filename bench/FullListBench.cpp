#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "Measure.h"
#include "MemoryDetail.h"
#include "Orderings.h"
#include "Program.h"
#include "items/SummaryItems.h"
#include "view/View.h"
#include "view/ViewSettings.h"

namespace kelvar_bench {

namespace {

using kelvar_2_1_7::SummaryItemImpl;
using kelvar_2_1_7::SummaryItems;
using kelvar_2_1_7::ViewSettings;

/// As many items as there are sites, all of them with a detail of every kind, so that hardly a number is there twice.
/// Its order is as good as none.
class FullList {
 public:
  explicit FullList(std::size_t sites) : project_(sites, kSeed) {
    details_.reserve(sites);
    for (const auto kind : kelvar_2_1_7::kAllKinds) {
      for (const Detail& detail : project_.details(kind)) {
        if (details_.size() < sites) details_.emplace_back(project_, detail, kEveryKind);
      }
    }
    for (MemoryDetail& detail : details_) visible.make(nullptr, &detail, nullptr, visible.size() + 1);
  }

  FullList* shuffled() {
    std::shuffle(visible.begin(), visible.end(), std::mt19937_64(kSeed));
    return this;
  }

 private:
  static constexpr MemoryDetail::Kinds kEveryKind{{true, true, true, true, true}};

  GeneratedProject project_;
  std::vector<MemoryDetail> details_;

 public:
  SummaryItems visible;
  SummaryItems hidden;
};

FullList& fullList(std::size_t sites) {
  static std::unique_ptr<FullList> kept;
  static std::size_t keptSites = 0;
  if (!kept || keptSites != sites) {
    kept.reset();
    kept = std::make_unique<FullList>(sites);
    keptSites = sites;
  }
  return *kept;
}

void registerRebuild(std::size_t sites, const Ordering& ordering) {
  const auto items = [=] { return fullList(sites).visible.size(); };
  measure(
      std::string("full-list/") + ordering.name, sites, items, [=] { return fullList(sites).shuffled(); },
      [mapping = ordering.mapping](FullList* list) {
        ViewSettings settings;
        settings.setMapping(mapping, false);
        kelvar_2_1_7::View().rebuild(settings, list->visible, list->hidden);
        return list;
      });
  if (ordering.key == nullptr) return;
  measure(
      std::string("full-pairs/") + ordering.name, sites, items,
      [=] {
        std::vector<NumberedItem> numbers;
        for (const auto& item : fullList(sites).shuffled()->visible)
          numbers.push_back({ordering.key(*item), item.get()});
        return numbers;
      },
      [](std::vector<NumberedItem>& numbers) {
        std::stable_sort(numbers.begin(), numbers.end(),
                         [](const NumberedItem& a, const NumberedItem& b) { return a.number < b.number; });
        return &numbers;
      });
}

}  // namespace

void registerFullList(std::size_t sites) {
  for (const Ordering& ordering : kOrderings) registerRebuild(sites, ordering);
  measure(
      "full-keys/locator", sites, [=] { return fullList(sites).visible.size(); },
      [=] {
        std::vector<PlacedItem> keys;
        for (const auto& item : fullList(sites).shuffled()->visible) keys.emplace_back(*item);
        return keys;
      },
      [](std::vector<PlacedItem>& keys) {
        std::stable_sort(keys.begin(), keys.end());
        return &keys;
      });
}

}  // namespace kelvar_bench
