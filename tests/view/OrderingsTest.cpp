// Whether each of the fifteen predicates answers as its ordering says.
#include <gtest/gtest.h>

#include <cmath>

#include "view/PlainOrderings.h"
#include "view/RandomItems.h"
#include "view/ordering/Orderings.h"

using namespace kelvar_2_1_7;
using support::detail;
using support::FakeDetail;

namespace {

using Predicate = bool (*)(SummaryItemImpl* a, SummaryItemImpl* b);
constexpr Predicate kPredicates[] = {
    SummaryItemImpl::compareLocator,
    SummaryItemImpl::compareKind,
    SummaryItemImpl::compareLabel,
    SummaryItemImpl::compareSurveyCpuTime,
    SummaryItemImpl::compareSurveyPriority,
    SummaryItemImpl::compareSurveyId,
    SummaryItemImpl::compareSurveyVectorizationSelfTime,
    SummaryItemImpl::compareSurveyVectorizationTotalTime,
    SummaryItemImpl::compareSurveyVectorizationPriority,
    SummaryItemImpl::compareSuitabilitySelfTime,
    SummaryItemImpl::compareSuitabilitySelfMaxGain,
    SummaryItemImpl::compareSortSuitabilityTotalMaxGain,
    SummaryItemImpl::compareCorrectnessErrors,
    SummaryItemImpl::compareCorrectnessWarnings,
    SummaryItemImpl::compareGeneralKindLocator,
};
static_assert(std::size(kPredicates) == kSummaryMappingCount);

TEST(Orderings, AnswerAsTheirPlainForms) {
  RandomItems random(7);
  const SummaryItems items = random.list(120);
  for (int mapping = 0; mapping < kSummaryMappingCount; ++mapping) {
    for (const auto& a : items) {
      for (const auto& b : items) {
        ASSERT_EQ(kPredicates[mapping](a.get(), b.get()),
                  plainlyBefore(static_cast<SummaryMapping>(mapping), a.get(), b.get()))
            << mapping;
      }
    }
  }
}

// '<' where the first is before the second, '>' where it is the other way, '.' where neither is.
char relation(SummaryMapping mapping, FakeDetail a, FakeDetail b) {
  const auto first = support::itemFrom(a);
  const auto second = support::itemFrom(b);
  const bool forward = kPredicates[mapping](first.get(), second.get());
  const bool backward = kPredicates[mapping](second.get(), first.get());
  EXPECT_FALSE(forward && backward);
  return forward ? '<' : backward ? '>' : '.';
}

TEST(Orderings, PairsThatAreEasilyMistaken) {
  const auto site = [](int detailKind, int annotationKind, double self = 0) {
    return detail("l", "a.cpp:1")
        .kind(static_cast<digestio::SummaryDetailKind>(detailKind))
        .reports(static_cast<support::Kind>(annotationKind))
        .vectorization({.selfTime = self});
  };
  const auto survey = [](double cpuTime, const char* place = "a.cpp:1") {
    return detail("l", place).survey({.cpuTime = cpuTime});
  };
  const auto warns = [](int first, int second) { return detail("l", "a.cpp:1").correctness({0, {first, second}}); };
  const struct {
    const char* name;
    char want;
    SummaryMapping mapping;
    FakeDetail a, b;
  } kCases[] = {
      {"three detail kinds at one place form a cycle, 0 before 1", '<', kSortLocator, site(0, 3), site(1, 2)},
      {"1 before 2", '<', kSortLocator, site(1, 2), site(2, 1)},
      {"two hot spots of one place", '.', kSortLocator, site(1, 2), site(1, 3)},
      {"two that are no detail kind", '.', kSortLocator, site(7, 2), site(7, 3)},
      {"loops by self time", '>', kSortLocator, site(2, 1, 1.0), site(2, 2, 2.0)},
      {"a missing time is -1, before what is less", '<', kSortSurveyCpuTime, detail("l", "a.cpp:2").map(), survey(-2)},
      {"a NaN is no tie", '.', kSortSurveyCpuTime, survey(std::nan(""), "a.cpp:1"), survey(1, "a.cpp:2")},
      {"two NaNs are none either", '.', kSortSurveyCpuTime, survey(std::nan(""), "a.cpp:1"),
       survey(std::nan(""), "b.cpp:1")},
      {"zeros tie", '<', kSortSurveyCpuTime, survey(-0.0, "a.cpp:1"), survey(0.0, "a.cpp:2")},
      {"warnings do not overflow", '<', kSortCorrectnessWarnings, warns(2147483647, 2147483647), warns(1, 1)},
      {"teams are with regions", '<', kSortGeneralKindLocator, site(0, 18), site(0, 2)},
      {"a value that is no kind is in group 0", '<', kSortGeneralKindLocator, site(0, 99), site(0, 2)},
      {"loops of one kind have no place", '.', kSortKind, detail("l", "a.cpp:1").kind(digestio::kLoop).map(),
       detail("l", "a.cpp:2").kind(digestio::kLoop).map()},
  };
  for (const auto& row : kCases) EXPECT_EQ(relation(row.mapping, row.a, row.b), row.want) << row.name;
}

TEST(Orderings, NamesAreThoseOfTheOlderEnumeration) {
  EXPECT_STREQ(displayName(kSortSurveyId), "sort survey id");
  EXPECT_STREQ(displayName(kSortSurveyVectorizationSelfTime), "sort suitability self time");
  EXPECT_STREQ(displayName(kSortSuitabilityTotalMaxGain), "sort general kind locator");
  for (const int unnamed : {12, 13, 14, 15, -1}) EXPECT_STREQ(displayName(static_cast<SummaryMapping>(unnamed)), "");
}

}  // namespace
