#include <algorithm>
#include <vector>

#include "LoadedProject.h"
#include "Measure.h"
#include "Orderings.h"

namespace kelvar_bench {

namespace {

using kelvar::SummaryData;
using kelvar::SummaryMapping;

void hideHotSpots(SummaryData& data, bool hide) {
  data.setSummaryDetailKindFilter(!hide, digestio::kHotSpot, sitenotes::annotation_t::parallel);
}

void hideSurvey(SummaryData& data, bool hide) {
  data.setSummaryKindEnable(digestio::kSurvey, !hide);
}

/// Shows everything in that order, and rebuilds the view.
SummaryData* shown(std::size_t sites, SummaryMapping mapping) {
  SummaryData& data = loaded(sites);
  hideHotSpots(data, false);
  hideSurvey(data, false);
  data.setMapping(mapping, false);
  benchmark::DoNotOptimize(data.num_items());
  return &data;
}

/// An ordering unrelated to `mapping`, so that the next rebuild has to sort everything.
SummaryMapping unlike(SummaryMapping mapping) {
  return mapping == kelvar::kSortLabel ? kelvar::kSortLocator : kelvar::kSortLabel;
}

/// Changes of settings, each measured with the following read.
struct Change {
  const char* name;
  bool fromAnotherOrder;
  void (*apply)(SummaryData& data, SummaryMapping mapping);
};

constexpr Change kChanges[] = {
    {"plain", true, [](SummaryData& data, SummaryMapping mapping) { data.setMapping(mapping, false); }},
    {"filtered", true,
     [](SummaryData& data, SummaryMapping mapping) {
       hideHotSpots(data, true);
       hideSurvey(data, true);
       data.setMapping(mapping, false);
     }},
    {"reversed", true, [](SummaryData& data, SummaryMapping mapping) { data.setMapping(mapping, true); }},
    {"only-direction", false, [](SummaryData& data, SummaryMapping mapping) { data.setMapping(mapping, true); }},
    {"only-one-filter", false, [](SummaryData& data, SummaryMapping) { hideHotSpots(data, true); }},
};

void registerChange(std::size_t sites, const Ordering& ordering, const Change& change) {
  const SummaryMapping mapping = ordering.mapping;
  const SummaryMapping before = change.fromAnotherOrder ? unlike(mapping) : mapping;
  measure(
      std::string("view/") + ordering.name + '/' + change.name, sites,
      [=] { return shown(sites, before)->num_items(); }, [=] { return shown(sites, before); },
      [mapping, apply = change.apply](SummaryData* data) {
        apply(*data, mapping);
        return data->num_items();
      });
}

/// The same items in the order from which the plain rebuild starts, with the first key only.
void registerPairs(std::size_t sites, const Ordering& ordering) {
  const auto pairs = [=] {
    SummaryData* data = shown(sites, unlike(ordering.mapping));
    std::vector<NumberedItem> items;
    for (int i = 0; i < data->num_items(); ++i) items.push_back({ordering.key(*data->item(i)), data->item(i)});
    return items;
  };
  measure(
      std::string("pairs/") + ordering.name, sites, [=] { return pairs().size(); }, pairs,
      [](std::vector<NumberedItem>& items) {
        std::stable_sort(items.begin(), items.end(),
                         [](const NumberedItem& a, const NumberedItem& b) { return a.number < b.number; });
        return &items;
      });
}

void registerKeys(std::size_t sites) {
  const auto keys = [=] {
    SummaryData* data = shown(sites, unlike(kelvar::kSortLocator));
    std::vector<PlacedItem> items;
    for (int i = 0; i < data->num_items(); ++i) items.emplace_back(*data->item(i));
    return items;
  };
  measure(
      "keys/locator", sites, [=] { return keys().size(); }, keys,
      [](std::vector<PlacedItem>& items) {
        std::stable_sort(items.begin(), items.end());
        return &items;
      });
}

}  // namespace

void registerView(std::size_t sites) {
  registerKeys(sites);
  for (const Ordering& ordering : kOrderings) {
    if (ordering.key != nullptr) registerPairs(sites, ordering);
    for (const Change& change : kChanges) registerChange(sites, ordering, change);
  }
}

}  // namespace kelvar_bench
