#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Comparison.h"

namespace kelvar_compare {
namespace {

SiteRecord record(const std::string& label, double time) {
  SiteRecord one;
  one.identity.label = label;
  one.identity.sequence = static_cast<unsigned long>(1 + label.front() - 'a');
  one.identity.database = 1;
  one.time = time;
  return one;
}

const Anchors& none(std::uint32_t) {
  static const Anchors kNone;
  return kNone;
}

Side side(const std::vector<std::vector<SiteRecord>>& runs) {
  Side all;
  for (const std::vector<SiteRecord>& sites : runs) {
    all.add({.name = "run", .wholes = {10}, .sites = sites}, none);
  }
  return all;
}

/// `a changed slower +50, b gone untimed lost`.
std::string told(const Side& before, const Side& after, const Settings& settings = {}) {
  std::string text;
  for (const SiteChange& site : compared(before, after, none, settings).sites) {
    const SideSite& of = site.after != SiteChange::kNone ? after.sites()[site.after] : before.sites()[site.before];
    text += (text.empty() ? "" : ", ") + of.identity.label + " " + std::string(nameOf(site.state)) + " " +
            std::string(nameOf(site.time.verdict));
    if (site.vectorisation == Turn::came) text += " vectorised";
    if (site.vectorisation == Turn::went) text += " scalar";
    if (site.races == Turn::came) text += " race";
    if (site.races == Turn::went) text += " mended";
    if (site.stale) text += " stale";
    if (site.lost) text += " lost";
  }
  return text;
}

TEST(Comparison, JudgesByTheTestOnlyFromThreeRunsASideOn) {
  const auto runs = [](double time, int count) {
    std::vector<std::vector<SiteRecord>> all;
    for (int run = 0; run < count; ++run) all.push_back({record("a", time + 0.001 * run), record("b", 1)});
    return side(all);
  };
  EXPECT_EQ(told(runs(2, 3), runs(3, 3)), "a changed slower, b unchanged same");
  EXPECT_EQ(told(runs(3, 3), runs(2, 3)), "a changed faster, b unchanged same");
  EXPECT_EQ(told(runs(2, 3), runs(3, 2)), "a unchanged untested, b unchanged untested");
  EXPECT_EQ(told(runs(2, 1), runs(3, 1), {.threshold = 0.4, .lives = {}}), "a changed slower, b unchanged same");
  EXPECT_EQ(told(runs(2, 1), runs(3, 1), {.threshold = 0.6, .lives = {}}), "a unchanged same, b unchanged same");
}

TEST(Comparison, CountsTheRunsThatTimedASiteAlone) {
  const auto runs = [](double time, int timed, int untimed) {
    Side all;
    for (int run = 0; run < timed + untimed; ++run) {
      const double noise = 0.001 * run;
      const bool isTimed = run < timed;
      all.add({.name = "run",
               .wholes = {isTimed ? time + 1 : 0},
               .sites = {record("a", isTimed ? time + noise : kUnknown), record("b", isTimed ? 1 + noise : kUnknown)}},
              none);
    }
    return all;
  };
  EXPECT_EQ(told(runs(2, 1, 2), runs(3, 1, 2)), "a unchanged untested, b unchanged untested");
  EXPECT_EQ(told(runs(2, 1, 2), runs(3, 1, 2), {.threshold = 0.1, .lives = {}}), "a changed slower, b unchanged same");
  EXPECT_EQ(told(runs(2, 3, 2), runs(3, 3, 1)), "a changed slower, b unchanged same");
  EXPECT_EQ(compared(runs(2, 1, 2), runs(3, 1, 2), none, {}).whole.verdict, Verdict::untested);
  EXPECT_EQ(compared(runs(2, 3, 2), runs(3, 3, 1), none, {}).whole.verdict, Verdict::slower);
}

TEST(Comparison, TakesTheTimeInAllFromWhatBothSidesTell) {
  const auto whole = [](std::array<double, 3> before, std::array<double, 3> after) {
    const auto one = [](const std::array<double, 3>& wholes) {
      Side side;
      side.add({.name = "run", .wholes = wholes, .sites = {}}, none);
      return side;
    };
    const Comparison of = compared(one(before), one(after), none, {.threshold = 0.1, .lives = {}});
    return std::string(of.wholeOf ? nameOf(*of.wholeOf) : "nothing") + " " + std::string(nameOf(of.whole.verdict));
  };
  EXPECT_EQ(whole({10, 5, 2}, {10, 5, 2}), "functions same");
  EXPECT_EQ(whole({10, 5, 2}, {0, 5, 2}), "sites same");
  EXPECT_EQ(whole({5, 5.01, 0}, {5.01, 5, 0}), "functions same");
  EXPECT_EQ(whole({10, 0, 0}, {0, 0, 2}), "nothing untimed");
  EXPECT_EQ(whole({0, 0, 0}, {10, 5, 2}), "nothing untimed");
}

TEST(Comparison, DoesNotJudgeWhatTakesNoTime) {
  EXPECT_EQ(told(side({{record("a", 0.009)}}), side({{record("a", 0.001)}}), {.threshold = 0.1, .lives = {}}),
            "a unchanged small");
  EXPECT_EQ(told(side({{record("a", 0.009)}}), side({{record("a", 0.5)}}), {.threshold = 0.1, .lives = {}}),
            "a changed slower");
}

TEST(Comparison, CallsASiteLostOnlyIfEveryRunHadItAndItsAnnotationIsGone) {
  const std::vector<SiteRecord> two{record("a", 1), record("b", 1)};
  const std::vector<SiteRecord> one{record("a", 1)};
  EXPECT_EQ(told(side({two, two}), side({one})), "a unchanged untested, b gone untimed lost");
  EXPECT_EQ(told(side({two, one}), side({one})), "a unchanged untested, b gone untimed");
  const Settings lives{.threshold = {}, .lives = [](const Identity&) { return true; }};
  EXPECT_EQ(told(side({two}), side({one}), lives), "a unchanged untested, b gone untimed");
  SiteRecord function = record("f", 1);
  function.identity.sort = Sort::function;
  function.identity.sequence = 0;
  EXPECT_EQ(told(side({{function}}), side({one})), "a new untimed, f gone untimed");
}

TEST(Comparison, SaysWhatCameAndWhatWent) {
  struct Case {
    const char* what;
    void (*before)(SiteRecord&);
    void (*after)(SiteRecord&);
    const char* want;
  };
  const Case cases[] = {
      {"vectorised", [](SiteRecord& one) { one.vectorised = Vectorised::no; },
       [](SiteRecord& one) { one.vectorised = Vectorised::partly; }, "a changed untimed vectorised"},
      {"scalar", [](SiteRecord& one) { one.vectorised = Vectorised::yes; },
       [](SiteRecord& one) { one.vectorised = Vectorised::no; }, "a changed untimed scalar"},
      {"partly", [](SiteRecord& one) { one.vectorised = Vectorised::yes; },
       [](SiteRecord& one) { one.vectorised = Vectorised::partly; }, "a changed untimed"},
      {"not said", [](SiteRecord& one) { one.vectorised = Vectorised::yes; }, [](SiteRecord&) {},
       "a unchanged untimed"},
      {"race", [](SiteRecord& one) { one.races = 0; }, [](SiteRecord& one) { one.races = 2; },
       "a changed untimed race"},
      {"race, nobody looked before", [](SiteRecord&) {}, [](SiteRecord& one) { one.races = 2; },
       "a changed untimed race"},
      {"mended", [](SiteRecord& one) { one.races = 3; }, [](SiteRecord& one) { one.races = 0; },
       "a changed untimed mended"},
      {"nobody looks any more", [](SiteRecord& one) { one.races = 3; }, [](SiteRecord&) {}, "a unchanged untimed"},
      {"more races", [](SiteRecord& one) { one.races = 1; }, [](SiteRecord& one) { one.races = 3; },
       "a unchanged untimed"},
      {"stride",
       [](SiteRecord& one) {
         one.strides = {100, 0, 0};
       },
       [](SiteRecord& one) {
         one.strides = {50, 0, 50};
       },
       "a changed untimed"},
      {"stale", [](SiteRecord& one) { one.match = Match::exact; }, [](SiteRecord& one) { one.match = Match::none; },
       "a changed untimed stale"},
      {"fresh", [](SiteRecord& one) { one.match = Match::none; }, [](SiteRecord& one) { one.match = Match::exact; },
       "a unchanged untimed"},
  };
  for (const Case& one : cases) {
    SiteRecord before = record("a", kUnknown);
    SiteRecord after = before;
    one.before(before);
    one.after(after);
    EXPECT_EQ(told(side({{before}}), side({{after}})), one.want) << one.what;
  }
}

TEST(Comparison, RunsOfASideAreOneMeasurement) {
  SiteRecord vectorised = record("a", 1);
  vectorised.vectorised = Vectorised::yes;
  vectorised.races = 1;
  SiteRecord scalar = record("a", 3);
  scalar.vectorised = Vectorised::no;
  scalar.races = 0;
  Side all = side({{record("b", 1), scalar}, {vectorised}, {scalar, record("b", 2)}, {record("c", 7)}});
  ASSERT_EQ(all.sites().size(), 3U);
  EXPECT_EQ(all.vectorised(1), Vectorised::no);
  EXPECT_EQ(all.sites()[1].races, 1);
  EXPECT_EQ(all.sites()[1].runs, 3U);
  EXPECT_EQ(median(all.times(1)), 3);
  EXPECT_EQ(median(all.times(0)), 1.5);
  EXPECT_EQ(median(all.times(2)), 7);
}

}  // namespace
}  // namespace kelvar_compare
