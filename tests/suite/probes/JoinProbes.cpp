/// What a join sees of annotations that are edited in place, of a state that changes between two adds, and of places
/// that are null by a suite's own rule.
#include <gtest/gtest.h>

#include "World.h"
#include "support/Faults.h"

namespace suite {
namespace {

using kelvar::SummaryData;

/// A site that both databases know, and a survey and a dependency analysis that saw it.
struct OneSite : World {
  OneSite() {
    today->sites = {{1, annotation("solver", at("a.cpp", 10))}};
    state->sites = {{1, annotation("solver", at("a.cpp", 10))}};
    result("survey", kSurvey, {{"loop", at("a.cpp", 14), {kSurvey}, 1.5}});
    result("deps", kDependencies, {{"loop", at("a.cpp", 14), {kDependencies}, 2}});
  }
};

void edit(const boost::shared_ptr<sitenotes::annotation_t>& annotation, const std::string& label, int line, int kind) {
  annotation->label = label;
  annotation->place = at("a.cpp", line);
  annotation->kind = kind;
}

TEST(Joins, ReadEditedAnnotationsAfresh) {
  OneSite world;
  SummaryData data(world.today);
  edit(world.today->sites[0].latest, "second", 20, 4);
  EXPECT_EQ(rows(data), "+ solver a.cpp:10 k2 #1\n");  // no join has read it yet
  data.addSummaryData("survey", {});
  EXPECT_EQ(rows(data), "+ second a.cpp:20 k4 #1 survey~1.5\n");
  EXPECT_EQ(data.summaryDataStatus(kSurvey), kelvar::kApproximateMatchCurrent);

  edit(world.today->sites[0].latest, "third", 10, 5);
  data.addSummaryData("deps", {});
  EXPECT_EQ(rows(data), "+ third a.cpp:10 k5 #1 survey~1.5 deps=2\n");
  EXPECT_EQ(data.summaryDataStatus(kDependencies), kelvar::kExactMatchCurrent);
}

TEST(Joins, ReadAnnotationsOfResultsAfreshToo) {
  OneSite world;
  world.today->sites.clear();
  SummaryData data(world.today);
  data.addSummaryData("survey", {});
  EXPECT_EQ(rows(data), "- solver a.cpp:10 k2 #1 survey-1.5 loop-\n");
  edit(world.state->sites[0].latest, "second", 12, 2);
  data.addSummaryData("deps", {});
  EXPECT_EQ(rows(data), "- second a.cpp:12 k2 #1 survey-1.5 loop- deps-2\n");
  EXPECT_EQ(data.summaryDataStatus(kDependencies), kelvar::kExactMatchCurrent);
}

TEST(Joins, GiveAFoldedItemItsAnnotationsIdentityBack) {
  OneSite world;
  world.today->sites.clear();
  world.detail("survey").place = at("a.cpp", 8);  // sorts before the annotation, and absorbs it
  SummaryData data(world.today);
  data.addSummaryData("survey", {});
  EXPECT_EQ(rows(data), "- solver a.cpp:10 k2 #1 survey-1.5\n");
}

TEST(Joins, LeaveHiddenItemsAsTheyAre) {
  OneSite world;
  world.state->sites[0].latest->place = at("a.cpp", 12);
  SummaryData data(world.today);
  data.setSummaryKindEnable(kMap, false);
  EXPECT_EQ(data.num_items(), 0);  // no analysis has a detail of the site
  edit(world.today->sites[0].latest, "second", 20, 2);
  data.addSummaryData("survey", {});
  EXPECT_EQ(data.summaryDataStatus(kSurvey), kelvar::kNoMatchCurrent);
  data.setSummaryKindEnable(kMap, true);
  EXPECT_EQ(rows(data), "+ solver a.cpp:10 k2 #1\n- solver a.cpp:12 k2 #1 survey-1.5 loop-\n");
  // Shown again, it takes part in the next join.
  data.addSummaryData("deps", {});
  EXPECT_EQ(rows(data), "- solver a.cpp:12 k2 #1 survey-1.5 loop- deps-2\n+ second a.cpp:20 k2 #1\n");
}

TEST(Joins, KeepSelections) {
  OneSite world;
  world.result("map", kMap, {{"bare", at("b.cpp", 3), {kMap}, 7}});
  world.result("gain", kSuitability, {{"bare", at("b.cpp", 1), {kSuitability}, 2}});
  SummaryData data(world.today);
  data.addSummaryData("map", {});
  for (int index = 0; index < data.num_items(); ++index) data.item(index)->setSelected(true);
  data.addSummaryData("survey", {});
  data.addSummaryData("gain", {});  // sorts before the selected item of that label, and absorbs it
  EXPECT_EQ(rows(data),
            "+ solver a.cpp:10 k2 #1 survey=1.5 *\n"
            "- bare b.cpp:1 k2 gain-2 map-7 *\n");
}

TEST(Joins, WalkTheStateForEachResult) {
  struct Change {
    const char* name;
    std::function<void(std::vector<sitenotes::database_t::site>&)> change;
    kelvar::SummaryDataStatus status;
    std::string rows;
  };
  const std::string known = "+ solver a.cpp:10 k2 #1 survey=1.5";
  const std::string unmatched = known + "\n- loop a.cpp:14 k2 deps-2\n";
  const std::vector<Change> changes{
      {"none", [](auto&) {}, kelvar::kExactMatchCurrent, known + " deps=2\n"},
      {"dead", [](auto& sites) { sites[0].alive = false; }, kelvar::kNoMatchCurrent, unmatched},
      {"disabled", [](auto& sites) { sites[0].latest->is_disabled = true; }, kelvar::kNoMatchCurrent, unmatched},
      {"without an annotation", [](auto& sites) { sites[0].latest.reset(); }, kelvar::kNoMatchCurrent, unmatched},
      {"gone", [](auto& sites) { sites.clear(); }, kelvar::kNoMatchCurrent, unmatched},
      {"moved by a new annotation", [](auto& sites) { sites[0].latest = annotation("solver", at("a.cpp", 12)); },
       kelvar::kApproximateMatchCurrent, known + " deps~2\n"},
      {"moved in place", [](auto& sites) { sites[0].latest->place = at("a.cpp", 12); },
       kelvar::kApproximateMatchCurrent, known + " deps~2\n"},
      {"with another site",
       [](auto& sites) {
         sites.push_back({2, annotation("more", at("b.cpp", 3), 1)});
       },
       kelvar::kNoMatchCurrent, known + " deps=2\n- more b.cpp:3 k1 #2 deps-\n"},
  };
  for (const Change& each : changes) {
    SCOPED_TRACE(each.name);
    OneSite world;
    SummaryData data(world.today);
    data.addSummaryData("survey", {});
    EXPECT_EQ(rows(data), known + '\n');
    each.change(world.state->sites);
    data.addSummaryData("deps", {});
    EXPECT_EQ(rows(data), each.rows);
    EXPECT_EQ(data.summaryDataStatus(kDependencies), each.status);
  }
}

TEST(Joins, AskForTheStateOnce) {
  OneSite world;
  SummaryData data(world.today);
  support::CallLog log;
  current.called = support::called;
  for (const char* path : {"survey", "deps", "survey"}) data.addSummaryData(path, {});
  EXPECT_EQ(log.text("recorder "), "recorder get_state survey\n");
  EXPECT_EQ(log.text("state get_sequences"), "state get_sequences\nstate get_sequences\nstate get_sequences\n");
}

TEST(Results, AskADetailWithoutAViewOnlyForItsKindAndViews) {
  OneSite world;
  world.state->sites.clear();
  world.result("survey", kSurvey, {{"mute", at("b.cpp", 3), {}, 0, 5, 1}});
  SummaryData data(world.today);
  support::CallLog log;
  current.called = [](std::string_view subject, std::string_view operation, std::string_view argument) {
    support::called(subject, operation, argument);
    const bool identity = operation == "locator" || operation == "label" || operation == "annotationKind";
    if (argument == "mute" && identity) throw support::Fault("nothing takes its identity from this detail");
  };
  EXPECT_NO_THROW(data.addSummaryData("survey", {}));
  EXPECT_EQ(rows(data), "-  :0 k0 d1\n+ solver a.cpp:10 k2 #1\n- loop a.cpp:14 k2 survey-1.5\n");
  EXPECT_NE(log.text("detail detailKind mute"), "");
  EXPECT_EQ(log.text("detail locator mute") + log.text("detail label mute") + log.text("detail annotationKind mute"),
            "");
}

TEST(Results, ReadHowManyDetailsThereAreBeforeEach) {
  OneSite world;
  SummaryData data(world.today);
  int asked = 0;
  current.called = [&](std::string_view subject, std::string_view operation, std::string_view) {
    if (subject != "collection" || operation != "detail" || ++asked != 1) return;
    world.result("survey", kSurvey, {{"late", at("b.cpp", 3), {kSurvey}, 4}});
  };
  data.addSummaryData("survey", {});
  EXPECT_EQ(rows(data), "+ solver a.cpp:10 k2 #1 survey=1.5\n- late b.cpp:3 k2 survey-4\n");
}

/// Any place on no line is null, whatever its file and column.
bool hasNoLine(const sitenotes::locator_t& place) {
  return place.get_line() < 1;
}

TEST(NullPlaces, TakeWhatAnotherNullPlaceHolds) {
  OneSite world;
  current.is_null = hasNoLine;
  world.today->sites[0].latest->place = at("", 0);
  world.state->sites[0].latest->place = at("b.cpp", 0, 7);
  current.results["survey"].details.clear();
  SummaryData data(world.today);
  data.addSummaryData("survey", {});
  EXPECT_EQ(rows(data), "+ solver b.cpp:0:7 k2 #1\n");
  EXPECT_EQ(data.summaryDataStatus(kSurvey), kelvar::kExactMatchCurrent);  // both lines are 0
  // The next join reads the place from the annotation again, and finds nothing in this state.
  world.state->sites.clear();
  current.results["deps"].details.clear();
  data.addSummaryData("deps", {});
  EXPECT_EQ(rows(data), "+ solver :0 k2 #1\n");
}

TEST(NullPlaces, AreOnNoLine) {
  OneSite world;
  current.is_null = hasNoLine;
  for (const auto& database : {world.today, world.state}) database->sites[0].latest->place = at("a.cpp", 0);
  world.detail("survey").place = at("a.cpp", 0, 3);
  SummaryData data(world.today);
  data.addSummaryData("survey", {});
  EXPECT_EQ(data.summaryDataStatus(kSurvey), kelvar::kExactMatchCurrent);  // that compares numbers alone
  EXPECT_EQ(rows(data), "+ solver a.cpp:0:3 k2 #1 survey~1.5\n");
}

TEST(NullPlaces, AreNullByTheSuitesRuleAlone) {
  OneSite world;
  current.is_null = [](const sitenotes::locator_t& place) { return place.get_line() < 0; };
  world.today->sites[0].latest->place = at("", 0);
  current.results["survey"].details.clear();
  SummaryData data(world.today);
  data.addSummaryData("survey", {});
  EXPECT_EQ(rows(data), "+ solver :0 k2 #1\n");
}

TEST(NullPlaces, FoldWithThoseOfTheirNameThatHaveAPlace) {
  World world;
  current.record(nullptr);
  current.is_null = hasNoLine;
  world.result("survey", kSurvey, {{"loop", at("a.cpp", 0), {kSurvey}, 1}, {"pair", at("a.cpp", 0), {kSurvey}, 2, 4}});
  world.result("deps", kDependencies,
               {{"loop", at("b.cpp", 5), {kDependencies}, 3}, {"pair", at("b.cpp", 0), {kDependencies}, 4, 4}});
  SummaryData data(world.today);
  data.addSummaryData("survey", {});
  data.addSummaryData("deps", {});
  // Two null places fold only if their files have the same name.
  EXPECT_EQ(rows(data), "- pair a.cpp:0 k4 survey-2\n- pair b.cpp:0 k4 deps-4\n- loop b.cpp:5 k2 survey-1 deps-3\n");
}

TEST(NullPlaces, SendTheSearchForTheCurrentPlaceOn) {
  OneSite world;
  current.is_null = hasNoLine;
  SummaryData data(world.today);
  world.today->sites[0].latest->place = at("a.cpp", 30);
  world.today->sites[0].latest = annotation("solver", at("b.cpp", 0));
  sitenotes::locator_t place = at("", 0);
  unsigned long handle = 0;
  EXPECT_TRUE(data.item(0)->getCurrentLocator(place, handle));
  EXPECT_EQ(place.get_line(), 30);  // of the item's own annotation, before the stored place
  EXPECT_EQ(handle, 1UL);
}

}  // namespace
}  // namespace suite
