#include <gtest/gtest.h>

#include "items/SummaryItemImpl.h"
#include "support/Fakes.h"
#include "support/Faults.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;
using support::annotation;
using support::detail;
using support::itemFrom;
using support::row;

namespace {

TEST(Item, OfAnAnnotationTakesItsIdentityAndTheRecordsThatAreFlagged) {
  const auto site = annotation("s", "x.cpp:3:4", sitenotes::annotation_t::task);
  EXPECT_EQ(row(*itemFrom(site, 7)), "+ s x.cpp:3:4 task");
  EXPECT_EQ(row(*itemFrom(site, 7, kNoMatchCurrent, {.survey = true})),
            "- s x.cpp:3:4 task | survey - | vectorization -");
  EXPECT_EQ(row(*itemFrom(site, 7, kNoMatchCurrent, {.suitability = true, .correctness = true, .map = true})),
            "- s x.cpp:3:4 task | suitability - | correctness - | map -");
  const auto item = itemFrom(site, 7, kNoMatchCurrent, {true, true, true, true});
  EXPECT_EQ(item->handle(), 7U);
  EXPECT_EQ(item->annotation(), site);
  for (const auto kind : kAllKinds) {
    EXPECT_EQ(item->summaryDetail(kind), nullptr);
    EXPECT_EQ(item->collectionAnnotation(kind), nullptr);
  }
}

TEST(Item, OfADetailTakesEachRecordThatItShows) {
  auto found = detail("s", "x.cpp:3").kind(digestio::kLoop).reports(sitenotes::annotation_t::task);
  EXPECT_EQ(row(*itemFrom(found)), "-  nowhere, loop") << "a detail that shows nothing has no identity to give";
  found.survey().vectorization().suitability().correctness().map();
  EXPECT_EQ(row(*itemFrom(found)),
            "- s x.cpp:3 task, loop | survey - 0.00 | vectorization - 0.00/0.00 | suitability - 0.00 0.00 0.00 | "
            "correctness - 0 0+0 | map - 0+0+0");

  const auto site = annotation("t", "y.cpp:9");
  const auto item = itemFrom(found, site, 5);
  EXPECT_EQ(row(*item).substr(0, 19), "- t y.cpp:9, loop |") << "an annotation says who the site is";
  EXPECT_EQ(item->handle(), 5U);
  const PerKind<bool> keeps{{false, false, true, true, true}};
  for (const auto kind : kAllKinds) EXPECT_EQ(item->collectionAnnotation(kind) == site, keeps[kind]) << kind;

  const SummaryItemImpl empty(nullptr, nullptr, nullptr, 3);
  EXPECT_EQ(row(empty), "-  nowhere");
  EXPECT_EQ(empty.handle(), 0U);
}

TEST(Item, AsksADetailForItsRecordsInOrder) {
  auto found = detail("s", "x.cpp:3").survey();
  const support::CallLog log;
  const auto item = itemFrom(found);
  const std::string calls = log.text();
  std::size_t last = 0;
  for (const char* view : {"surveyView", "surveyVectorizationView", "correctnessView", "mapView", "suitabilityView"}) {
    const std::size_t next = calls.find(view, last);
    ASSERT_NE(next, std::string::npos) << view << " out of order in:\n" << calls;
    last = next + 1;
  }
}

TEST(Item, KeepsADetailWhoseRecordWentAway) {
  // The stored detail answers for itself; the typed question goes to its view.
  auto shown = detail("s", "x.cpp:3").survey();
  const auto item = itemFrom(shown);
  shown = detail("s", "x.cpp:3");
  EXPECT_EQ(item->summaryDetail(digestio::kSurvey), &shown);
  EXPECT_EQ(item->surveyDetail(), nullptr);
  EXPECT_EQ(item->summaryDetail(digestio::kMap), nullptr);
}

/// `FOUND LINE HANDLE` of what `ask` tells.
template <class Ask>
std::string told(Ask ask) {
  sitenotes::locator_t place = support::at("old.cpp:1");
  unsigned long handle = 99;
  const bool found = ask(place, handle);
  EXPECT_EQ(place.is_null(), place.get_line() == 0);
  return (found ? "found " : "none ") + std::to_string(place.get_line()) + ' ' + std::to_string(handle);
}

TEST(Item, SaysWhereAnAnalysisSawIt) {
  auto found = detail("s", "x.cpp:3").correctness();
  const auto seen = [](SummaryItemImpl& item, digestio::SummaryDataKind kind) {
    return told([&](auto& place, auto& handle) { return item.getCollectionLocator(kind, place, handle); });
  };
  EXPECT_EQ(seen(*itemFrom(found), digestio::kCorrectness), "found 3 0");
  const auto annotated = itemFrom(found, annotation("t", "y.cpp:9"), 5);
  EXPECT_EQ(seen(*annotated, digestio::kCorrectness), "found 3 5");
  EXPECT_EQ(seen(*annotated, digestio::kMap), "none 0 5") << "told by its handle all the same";
}

TEST(Item, WithoutAnOwnerIsWhereItsAnnotationOrItselfIs) {
  auto found = detail("s", "x.cpp:3").map();
  const auto current = [](SummaryItemImpl& item) {
    return told([&](auto& place, auto& handle) { return item.getCurrentLocator(place, handle); });
  };
  EXPECT_EQ(current(*itemFrom(found)), "found 3 0");
  EXPECT_EQ(current(*itemFrom(annotation("t", "y.cpp:9"), 0)), "found 9 0");
  EXPECT_EQ(current(*itemFrom(annotation("t", ""), 5)), "none 0 5");
}

}  // namespace
