/// What a view sees of details that answer differently later, and how long items live.
#include <gtest/gtest.h>

#include "World.h"
#include "kelvar/SummaryDataLoader.h"
#include "support/Faults.h"

namespace suite {
namespace {

using kelvar::SummaryData;

/// Two sites in the order of their times.
struct TwoTimes : World {
  TwoTimes() {
    current.record(nullptr);
    result("survey", kSurvey, {{"short", at("a.cpp", 1), {kSurvey}, 1}, {"long", at("a.cpp", 2), {kSurvey}, 2}});
    data.addSummaryData("survey", {});
    data.setMapping(kelvar::kSortSurveyCpuTime, false);
    EXPECT_EQ(labels(), "long short ");
  }
  std::string labels() {
    std::string labels;
    for (int index = 0; index < data.num_items(); ++index) labels += data.item(index)->label() + ' ';
    return labels;
  }
  SummaryData data{today};
};

TEST(Views, AreSortedAnewAfterAnySetting) {
  struct Setting {
    const char* name;
    std::function<void(SummaryData&)> set;
    std::string labels;
  };
  const std::vector<Setting> settings{
      {"project options", [](auto& data) { data.setSuitabilityProjectOptions(nullptr); }, "short long "},
      {"same ordering", [](auto& data) { data.setMapping(kelvar::kSortSurveyCpuTime, false); }, "short long "},
      {"other direction", [](auto& data) { data.setMapping(kelvar::kSortSurveyCpuTime, true); }, "long short "},
      {"same kinds", [](auto& data) { data.setSummaryKindEnable(kSurvey, true); }, "short long "},
      {"same filter",
       [](auto& data) { data.setSummaryDetailKindFilter(true, digestio::SummaryDetailKind{0}, kEveryAnnotationKind); },
       "short long "},
  };
  for (const Setting& each : settings) {
    SCOPED_TRACE(each.name);
    TwoTimes world;
    world.detail("survey").value = 3;
    EXPECT_EQ(world.labels(), "long short ");  // nothing made the view stale
    each.set(world.data);
    EXPECT_EQ(world.labels(), each.labels);
  }
}

TEST(Views, AreFilteredAnewAfterAnySetting) {
  TwoTimes world;
  world.data.setSummaryKindEnable(kMap, false);
  EXPECT_EQ(world.labels(), "long short ");
  world.detail("survey").shows[kSurvey] = false;
  EXPECT_EQ(world.labels(), "long short ");
  world.data.setSuitabilityProjectOptions(nullptr);
  EXPECT_EQ(world.labels(), "long ");
  world.detail("survey").shows[kSurvey] = true;
  world.data.setSuitabilityProjectOptions(nullptr);
  EXPECT_EQ(world.labels(), "long short ");
}

TEST(Views, ThatAreValidAskNobody) {
  TwoTimes world;
  support::CallLog log;
  current.called = support::called;
  EXPECT_EQ(world.labels(), "long short ");
  EXPECT_EQ(log.text(), "");
}

TEST(Joins, FoldWhatShowsNoViewThatTheyShare) {
  World world;
  current.record(nullptr);
  world.result("first", kSurvey, {{"loop", at("a.cpp", 1), {kSurvey}, 1}});
  world.result("second", kSurvey, {{"loop", at("a.cpp", 9), {kSurvey}, 2}});
  SummaryData data(world.today);
  data.addSummaryData("first", {});
  current.called = [&](std::string_view, std::string_view operation, std::string_view) {
    if (operation == "dataKind") world.detail("first").shows[kSurvey] = false;  // from the second result on
  };
  data.addSummaryData("second", {});
  EXPECT_EQ(rows(data), "- loop a.cpp:1 k2 survey-\n");
}

TEST(Results, CarryTheKindsOfTheViewsThatTheirItemsShow) {
  World world;
  current.record(nullptr);
  world.result("deps", kDependencies, {{"loop", at("a.cpp", 1), {kMap}, 1}});
  SummaryData data(world.today);
  current.called = [&](std::string_view, std::string_view operation, std::string_view) {
    if (operation == "label") world.detail("deps").shows[kMap] = false;  // while its item is being built
  };
  data.addSummaryData("deps", {});
  EXPECT_EQ(rows(data), "- loop a.cpp:1 k2 map-\n");
  EXPECT_EQ(data.summaryDataStatus(kMap), kelvar::kNotPresent);
  EXPECT_EQ(data.summaryDataStatus(kDependencies), kelvar::kNoMatchCurrent);
}

TEST(Results, KeepTheirItemsUntilTheirCollectionGoes) {
  std::string ended;
  World world;
  world.state->hands_out_copies = world.today->hands_out_copies = true;
  world.today->sites = {{1, annotation("today's", at("a.cpp", 10))}};
  world.state->sites = {{1, annotation("recorded", at("a.cpp", 10))}};
  world.result("survey", kSurvey, {});
  {
    SummaryData data(world.today);
    data.addSummaryData("survey", {});
    current.scanner.reset();
    current.ended = [&](std::string_view subject, std::string_view name, std::string_view) {
      ended.append(subject).append(" ").append(name).append("\n");
    };
    EXPECT_EQ(data.num_items(), 1);
    EXPECT_EQ(data.item(0)->label(), "today's");
    world.today->sites.clear();
    world.state->sites.clear();
    ended.clear();
    world.state.reset();  // the data object holds the last reference
  }
  EXPECT_EQ(ended, "annotation today's\nannotation recorded\ncollection deleted\ndatabase state\n");
}

TEST(Suites, NeedNoMoreThanTheirHeadersDeclare) {
  static_assert(!std::is_nothrow_move_constructible_v<toolbelt::path_t>);
  static_assert(!std::is_nothrow_move_assignable_v<sitenotes::locator_t>);
  static_assert(!std::is_default_constructible_v<sitenotes::locator_t>);
  World world;
  world.today->sites = {{1, annotation("solver", at("src/a.cpp", 10))}};
  world.state->sites = world.today->sites;
  const auto paths = [&](const char* path, digestio::SummaryDataKind kind) {
    return world.result(path, kind, {{"solver", at("src/a.cpp", 10), {kind}, 3}});
  };
  struct Context final : kelvar::SummaryDataLoader::IFinalizeTaskContext {
    boost::shared_ptr<kelvar::SummaryDataLoader::IDataFromCollector> dataFromCollector() override { return data; }
    boost::shared_ptr<kelvar::SummaryDataLoader::IDataFromCollector> data;
  } context;
  context.data.reset(new kelvar::SummaryDataLoader::DataFromResult(
      paths("survey", kSurvey), paths("survey/surveyvectorization", kVectorization), paths("gain", kSuitability),
      paths("deps", kDependencies), paths("map", kMap), world.today, nullptr, nullptr));
  const auto loader = kelvar::SummaryDataLoader::Create();
  loader->DoTask(&context);
  SummaryData& data = *loader->summaryData();
  EXPECT_EQ(rows(data), "+ solver a.cpp:10 k2 #1 survey=3 loop=3 gain=3 deps=3 map=3\n");
  EXPECT_NE(data.asString(true).find("a task"), std::string::npos);
  EXPECT_EQ(data.item(0)->collectionAnnotation(kDependencies), nullptr);
}

}  // namespace
}  // namespace suite
