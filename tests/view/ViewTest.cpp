// Whether the view shows what the settings say, in their order.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/Faults.h"
#include "support/Rows.h"
#include "view/RandomItems.h"
#include "view/View.h"

using namespace kelvar_2_1_7;

namespace {

using List = std::vector<const SummaryItemImpl*>;

// The settings and the two filters, written out plainly: items are taken out one by one.
struct PlainView {
  bool kinds[5] = {true, true, true, true, true};
  bool detailKinds[3] = {true, true, true};
  bool annotationKinds[19];
  List visible;
  List hidden;

  PlainView() { std::fill(std::begin(annotationKinds), std::end(annotationKinds), true); }

  template <class Keep>
  void filter(Keep keep) {
    for (std::size_t i = 0; i < visible.size();) {
      if (keep(visible[i])) {
        ++i;
      } else {
        hidden.push_back(visible[i]);
        visible.erase(visible.begin() + static_cast<std::ptrdiff_t>(i));
      }
    }
  }

  void rebuild() {
    visible.insert(visible.end(), hidden.begin(), hidden.end());
    hidden.clear();
    if (!std::all_of(std::begin(kinds), std::end(kinds), [](bool on) { return on; })) {
      filter([&](const SummaryItemImpl* item) {
        return item && ((kinds[0] && item->surveyDetail()) || (kinds[2] && item->suitabilityDetail()) ||
                        (kinds[3] && item->correctnessDetail()) || (kinds[4] && item->mapDetail()) ||
                        (kinds[1] && item->surveyVectorizationDetail()));
      });
    }
    filter([&](const SummaryItemImpl* item) {
      if (item == nullptr) return true;
      const auto all = [](const auto& flags) {
        return std::all_of(std::begin(flags), std::end(flags), std::identity());
      };
      if (item->detailKind() > 2) return all(detailKinds);
      if (!detailKinds[item->detailKind()] || item->detailKind() != 0) return detailKinds[item->detailKind()];
      const int kind = item->annotationKind();
      return 0 <= kind && kind < 19 ? annotationKinds[kind] : all(annotationKinds);
    });
  }
};

TEST(View, ShowsAndHidesAsThePlainFiltersDo) {
  for (unsigned int seed = 0; seed < 60; ++seed) {
    RandomItems random(seed);
    SummaryItems visible = random.list(seed % 30 == 29 ? 3000 : std::size_t{seed});
    SummaryItems hidden;
    ViewSettings settings;
    View view;
    PlainView plain;
    for (int step = 0; step < 25; ++step) {
      const bool on = random.below(2) == 0;
      const int kind = random.below(5);
      const int detailKind = random.below(3);
      const int annotationKind = random.below(20);
      if (random.below(2) == 0) {
        settings.setSummaryKindEnable(static_cast<digestio::SummaryDataKind>(kind), plain.kinds[kind] = on);
      } else {
        settings.setSummaryDetailKindFilter(on, static_cast<digestio::SummaryDetailKind>(detailKind),
                                            static_cast<support::Kind>(annotationKind));
        if (detailKind != 0) plain.detailKinds[detailKind] = on;
        for (int k = 0; detailKind == 0 && k < 19; ++k) {
          if (annotationKind == 19 || annotationKind == k) plain.annotationKinds[k] = on;
        }
        plain.detailKinds[0] =
            std::count(std::begin(plain.annotationKinds), std::end(plain.annotationKinds), true) != 0;
      }
      const bool reverse = random.below(2) == 0;
      // Mostly the filters alone change.
      const auto mapping =
          random.below(3) == 0 ? static_cast<SummaryMapping>(random.below(kSummaryMappingCount)) : settings.mapping();
      settings.setMapping(mapping, reverse);

      plain.visible = pointers(visible);
      plain.hidden = pointers(hidden);
      plain.rebuild();
      view.rebuild(settings, visible, hidden);
      ASSERT_EQ(pointers(hidden), plain.hidden) << "seed " << seed << " step " << step;

      const List shown = pointers(visible);
      ASSERT_TRUE(std::is_permutation(shown.begin(), shown.end(), plain.visible.begin(), plain.visible.end()));
      const std::string rows = support::rows(visible);
      visible.sort(settings.mapping());
      if (reverse) std::reverse(visible.begin(), visible.end());
      ASSERT_EQ(support::rows(visible), rows) << "seed " << seed << " step " << step;
    }
  }
}

TEST(View, NoItemIsLostWhenSomethingFails) {
  struct Fixture {
    RandomItems random{13};
    SummaryItems visible = random.list(20);
    SummaryItems hidden = random.list(20);
    ViewSettings settings;
    Fixture() {
      settings.setSummaryKindEnable(digestio::kSurvey, false);
      settings.setSummaryDetailKindFilter(false, digestio::kHotSpot, sitenotes::annotation_t::parallel);
      settings.setMapping(kSortKind, true);
    }
    std::string rebuilt() {
      View().rebuild(settings, visible, hidden);
      return support::rows(visible);
    }
  };
  const std::string want = Fixture().rebuilt();
  const auto prepare = [] { return std::make_unique<Fixture>(); };
  const auto rebuild = [](Fixture& fixture) { View().rebuild(fixture.settings, fixture.visible, fixture.hidden); };
  const auto check = [&](Fixture& fixture) {
    EXPECT_EQ(fixture.visible.size() + fixture.hidden.size(), 40);
    EXPECT_EQ(fixture.rebuilt(), want);
  };
  EXPECT_GT(support::atEveryFault<support::CallFault>(prepare, rebuild, check), 20);
  EXPECT_GT(support::atEveryFault<support::AllocationFault>(prepare, rebuild, check), 4);
}

}  // namespace
