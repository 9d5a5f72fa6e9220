#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "kelvar/SummaryData.h"
#include "kelvar/SummaryDataLoader.h"
#include "support/Fakes.h"
#include "support/Faults.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;
using support::annotation;
using support::detail;

namespace {

std::string statuses(const SummaryData& data) {
  std::string text;
  for (const auto kind : kAllKinds) text += std::to_string(data.summaryDataStatus(kind));
  return text;
}

boost::shared_ptr<support::FakeDatabase> twoSites() {
  const auto database = boost::make_shared<support::FakeDatabase>();
  database->site(7, annotation("s", "x.cpp:12")).site(8, annotation("t", "x.cpp:20", sitenotes::annotation_t::task));
  return database;
}

TEST(SummaryData, WithoutAnythingAnswersNeutrally) {
  SummaryData data(boost::shared_ptr<sitenotes::database_t>{});
  EXPECT_EQ(data.num_items(), 0);
  EXPECT_EQ(statuses(data), "00000");
  EXPECT_EQ(data.timestamp(), 0U);
  EXPECT_EQ(data.threading_paradigm(), 0);
  EXPECT_EQ(data.aggregateResult()->threading_paradigm(), 7);
  EXPECT_EQ(data.num_processors() + data.num_kova_threads() + data.target_system(), 0);
  EXPECT_EQ(data.programMaxGain(), 0.0);
  EXPECT_FALSE(data.hasSurveyData() || data.hasSuitabilityData() || data.hasCorrectnessData() || data.hasMAPData());
  for (SummaryResult* result : {data.surveyResult(), data.suitabilityResult(), data.correctnessResult(),
                                data.mapResult(), data.aggregateResult()}) {
    EXPECT_EQ(result->resultCount(), 0);
    EXPECT_EQ(result->summaryCollection(), nullptr);
    EXPECT_FALSE(result->likelyDebugInfoMissing());
  }
}

TEST(SummaryData, FilesAResultUnderEveryKindItCarries) {
  support::Suite suite;
  suite.result("r",
               {.paradigm = 1, .details = {detail("h", "y.cpp:1").kind(digestio::kLoop).survey().vectorization()}});
  SummaryData data(twoSites());
  data.addSummaryData("nothing", {});
  data.addSummaryData("", {});
  EXPECT_EQ(statuses(data), "00000");

  data.addSummaryData("r", {});
  EXPECT_EQ(statuses(data), "22000");
  EXPECT_EQ(data.aggregateResult()->resultCount(), 1);
  EXPECT_EQ(data.surveyResult()->resultCount(), 1);
  EXPECT_EQ(data.mapResult()->resultCount(), 0);
  EXPECT_TRUE(data.hasSurveyData());
  EXPECT_FALSE(data.hasMAPData());

  suite.result("r2", {.kind = digestio::kMap, .paradigm = 2, .gain = 3.0});
  data.addSummaryData("r2", {});
  EXPECT_EQ(statuses(data), "22004") << "a result without sites matches";
  EXPECT_FALSE(data.hasMAPData()) << "but brings no data";
  EXPECT_EQ(data.threading_paradigm(), 0);
  EXPECT_EQ(data.aggregateResult()->threading_paradigm(), 7);
  EXPECT_EQ(data.programMaxGain(), 3.0);

  data.addSummaryData("r", {});
  EXPECT_EQ(data.surveyResult()->resultCount(), 2);
  EXPECT_EQ(data.aggregateResult()->result(2), data.surveyResult()->result(1));
}

TEST(SummaryData, TakesTheStateOfTheFirstPathThatHasOne) {
  support::Suite suite;
  for (const char* path : {"none", "made", "late"}) {
    suite.result(path, {.details = {detail("s", "x.cpp:10").survey()}});
  }
  const auto asItWas = boost::make_shared<support::FakeDatabase>("state");
  asItWas->site(7, annotation("s", "x.cpp:10"));
  const auto owner = boost::make_shared<support::FakeDatabase>("owner");
  owner->makes("made", asItWas).state("late", boost::make_shared<support::FakeDatabase>("other"));
  suite.scanner(owner);

  SummaryData data(twoSites());
  const support::CallLog log;
  data.addSummaryData("none", {});
  EXPECT_EQ(statuses(data), "20000") << "without a state nothing has a handle";
  data.addSummaryData("made", {});
  EXPECT_EQ(statuses(data), "30000") << "the site has moved since";
  data.addSummaryData("late", {});
  EXPECT_EQ(log.text("owner get_state") + log.text("owner make_state"),
            "owner get_state none\nowner get_state made\nowner make_state false none\nowner make_state false made\n");

  suite.scanner(nullptr);
  SummaryData alone(twoSites());
  alone.addSummaryData("made", {});
  EXPECT_EQ(statuses(alone), "20000");
}

TEST(SummaryData, TellsWhereASiteIsNow) {
  const auto database = twoSites();
  SummaryData data(database);
  database->site(7, annotation("s", "moved.cpp:30")).site(8, nullptr);
  sitenotes::locator_t place = support::at("");
  unsigned long handle = 0;
  EXPECT_TRUE(data.item(0)->getCurrentLocator(place, handle));
  EXPECT_EQ(place.get_file().get_leaf() + std::to_string(handle), "moved.cpp7");
  EXPECT_TRUE(data.item(1)->getCurrentLocator(place, handle));
  EXPECT_EQ(place.get_line(), 20) << "gone from the database: as it was annotated";
  EXPECT_EQ(data.annotationDatabase(), database);
}

TEST(SummaryData, ShowsEveryChangeInTheNextRead) {
  SummaryData data(twoSites());
  EXPECT_EQ(support::rows(data), "+ s x.cpp:12\n+ t x.cpp:20 task\n");
  data.setMapping(kSortLabel, true);
  EXPECT_EQ(support::rows(data), "+ t x.cpp:20 task\n+ s x.cpp:12\n");
  data.setSummaryKindEnable(digestio::kMap, false);
  EXPECT_EQ(support::rows(data), "") << "what no analysis saw, none that is left shows";
  data.setSummaryKindEnable(digestio::kMap, true);
  data.setSummaryDetailKindFilter(false, digestio::kAnnotatedSite, sitenotes::annotation_t::task);
  data.setSuitabilityProjectOptions(nullptr);
  EXPECT_EQ(support::rows(data), "+ s x.cpp:12\n");
}

TEST(SummaryData, LeavesHiddenItemsOutOfAJoin) {
  support::Suite suite;
  const auto database = twoSites();
  suite.scanner(database);
  database->makes("r", twoSites());
  suite.result("r", {.details = {detail("s", "x.cpp:12").survey()}});
  SummaryData data(database);
  data.setSummaryDetailKindFilter(false, digestio::kAnnotatedSite, sitenotes::annotation_t::task);
  EXPECT_EQ(support::rows(data), "+ s x.cpp:12\n");
  data.addSummaryData("r", {});
  EXPECT_EQ(statuses(data), "20000") << "the hidden site met nobody";
  data.setSummaryDetailKindFilter(true, digestio::kAnnotatedSite, sitenotes::annotation_t::task);
  EXPECT_EQ(support::rows(data),
            "+ s x.cpp:12 | survey = 0.00\n- t x.cpp:20 task | survey - | vectorization -\n"
            "+ t x.cpp:20 task\n");
}

/// A program of which two results are in already.
struct Program {
  Program() {
    const auto database = twoSites();
    suite.scanner(database);
    database->makes("survey", twoSites());
    suite.result("survey", {.details = {detail("s", "x.cpp:12").survey(),
                                        detail("h", "y.cpp:1").kind(digestio::kHotSpot).survey()}});
    suite.result("map", {.kind = digestio::kMap, .details = {detail("a label that needs memory", "x.cpp:12").map()}});
    data = std::make_unique<SummaryData>(database);
    data->addSummaryData("survey", {});
    before = support::rows(*data);
  }
  support::Suite suite;
  std::unique_ptr<SummaryData> data;
  std::string before;
};

TEST(SummaryData, AddsAResultWholeOrNotAtAll) {
  const auto add = [](Program& p) {
    p.data->setMapping(kSortSurveyCpuTime, false);
    p.data->addSummaryData("map", {});
    static_cast<void>(p.data->num_items());
  };
  const auto check = [](Program& p) {
    p.data->setMapping(kSortLocator, false);
    if (statuses(*p.data)[4] == '0') {
      EXPECT_EQ(support::rows(*p.data), p.before);
      EXPECT_EQ(p.data->aggregateResult()->resultCount(), 1);
      p.data->addSummaryData("map", {});
    }
    EXPECT_EQ(statuses(*p.data), "20004");
    EXPECT_EQ(p.data->aggregateResult()->resultCount(), 2);
  };
  const auto [calls, allocations] = support::atEveryFault<Program>(add, check);
  EXPECT_GT(calls, 30);
  EXPECT_GT(allocations, 20);
}

TEST(SummaryData, WritesInPiecesWhatItSaysAsAString) {
  support::Suite suite;
  support::Collection result;
  for (int line = 1; line <= 3000; ++line) {
    result.details.push_back(support::detail("solver", "x.cpp:" + std::to_string(line)).survey());
  }
  suite.result("survey", result);
  SummaryData data(boost::shared_ptr<sitenotes::database_t>{});
  data.addSummaryData("survey", {});
  std::string written;
  int pieces = 0;
  data.write(true, [&](std::string_view piece) {
    written += piece;
    ++pieces;
  });
  EXPECT_EQ(written, data.asString(true));
  EXPECT_GT(pieces, 2);
  EXPECT_THROW(data.write(false, [](std::string_view) { throw std::runtime_error("full"); }), std::runtime_error);
  EXPECT_EQ(data.asString(true), written);
}

TEST(SummaryData, IsBuiltWholeOrNotAtAll) {
  const auto database = twoSites();
  const auto build = [&](int&) { SummaryData data(database); };
  const auto [calls, allocations] = support::atEveryFault<int>(build, [](int&) {});
  EXPECT_GT(calls, 5);
  EXPECT_GT(allocations, 3);
}

}  // namespace
