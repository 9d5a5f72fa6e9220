#include <limits>
#include <memory>
#include <numeric>
#include <set>

#include "Files.h"
#include "ResultWriter.h"
#include "digestio.h"
#include "resdir.h"

namespace kelvar_platform::test {
namespace {

using namespace std::string_literals;

class ResultWriting : public Files {
 protected:
  /// The paths in the folder and below it.
  [[nodiscard]] std::string tree() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path())) {
      names.insert(entry.path().lexically_relative(path()).string() + ' ');
    }
    return std::accumulate(names.begin(), names.end(), std::string());
  }
};

TEST_F(ResultWriting, WritesEveryValueSoThatItIsReadBack) {
  RunRecord run;
  run.hostName = "node \"17\"\n\x01\\";
  run.collectionStartTime = std::numeric_limits<std::uint64_t>::max();
  run.commandLog = "/c.log";
  ResultWriter writer(path("new/survey/"), run, {.dataKind = digestio::kSuitability, .programMaxGain = 0.1});
  DetailRecord detail{.detailKind = digestio::kLoop, .annotationKind = 18, .label = "a\0\u00e9"s};
  detail.file = "/s/\U0001F600.cpp";
  detail.line = std::numeric_limits<std::int32_t>::max();
  detail.survey = {.cpuTime = 0.1 + 0.2, .priority = -1, .id = std::numeric_limits<std::int32_t>::min()};
  detail.surveyVectorization = {.selfTime = 5e-324, .totalTime = 1.7976931348623157e308, .state = 3};
  detail.suitability = {.selfTime = 1e22, .flags = 0xFFFFFFFF};
  detail.dependencies = {.errors = 1, .warnings = {2, 3}};
  detail.map = {.strides = {std::numeric_limits<std::int64_t>::min(), 0, 5}};
  writer.add(detail);
  writer.add(kelvar_platform::DetailRecord{});
  EXPECT_FALSE(std::filesystem::exists(path("new/survey")));
  writer.finish();

  EXPECT_EQ(tree(), "new new/survey new/survey/collection.json new/survey/result.json ");
  for (const char* file : {"result.json", "collection.json"}) {
    EXPECT_EQ(support::contentOf(path("new/survey/") + file),
              support::contentOf(KELVAR_TEST_FOLDER "/written/" + std::string(file)));
  }
  EXPECT_TRUE(std::unique_ptr<digestio::SummaryCollection>(digestio::SummaryCollection::load(path("new/survey"))));
  EXPECT_TRUE(resdir::ResultDirectoryManager::open(path("new/survey").c_str(), false, nullptr)) << refusal();
}

TEST_F(ResultWriting, ReplacesAResultAsAWholeAndOnlyWhenFinished) {
  const auto writeOne = [this](const std::string& name, const std::string& label, bool finish) {
    ResultWriter writer(path(name), RunRecord{}, {});
    writer.add({.label = label});
    if (finish) writer.finish();
  };
  writeOne("map", "old", true);
  ResultWriter sub(path("map/surveyvectorization"), std::nullopt, {.dataKind = digestio::kSurveyVectorization});
  sub.finish();
  writeOne("map", "dropped", false);
  EXPECT_EQ(tree(),
            "map map/collection.json map/result.json map/surveyvectorization "
            "map/surveyvectorization/collection.json ");
  EXPECT_NE(support::contentOf(path("map/collection.json")).find("old"), std::string::npos);
  writeOne("map", "new", true);
  EXPECT_EQ(tree(), "map map/collection.json map/result.json ");
  EXPECT_NE(support::contentOf(path("map/collection.json")).find("new"), std::string::npos);
  writeRun(path("map"), {.hostName = "other"});
  EXPECT_EQ(tree(), "map map/collection.json map/result.json ");
  EXPECT_STREQ(resdir::ResultDirectoryManager::open(path("map").c_str(), false, nullptr)->hostName(), "other");
}

TEST_F(ResultWriting, RefusesWhatCouldNotBeReadBackAndLeavesNothing) {
  const double infinite = std::numeric_limits<double>::infinity();
  const std::pair<DetailRecord, std::string> cases[] = {
      {{.annotationKind = 19}, "details[1].annotationKind: expected an integer from 0 to 18"},
      {{.label = "\xC3("}, "details[1].label: expected a text in UTF-8"},
      {{.line = -1}, "details[1].line: expected an integer from 0 to 2147483647"},
      {{.survey = SurveyRecord{.cpuTime = infinite}}, "details[1].survey.cpuTime: expected a finite number"},
  };
  for (const auto& [detail, want] : cases) {
    ResultWriter writer(path("map"), RunRecord{}, {});
    writer.add(kelvar_platform::DetailRecord{});
    EXPECT_EQ(refused([&, &bad = detail] { writer.add(bad); }), "map/collection.json: " + want);
  }
  EXPECT_EQ(refused([&] { writeRun(path(), {.cpuCount = -1}); }),
            "result.json: cpuCount: expected an integer from 0 to 2147483647");
  EXPECT_EQ(tree(), "");
}

TEST_F(ResultWriting, LeavesAloneWhatIsNoResultDirectory) {
  write("file", "mine");
  std::filesystem::create_directories(path("home/surveyvectorization"));
  write("home/surveyvectorization/thesis.txt", "mine");
  const std::string before = tree();
  const auto start = [this](const std::string& name) {
    return refused([&] { ResultWriter(path(name), std::nullopt, {}).finish(); });
  };
  EXPECT_EQ(start("file"), "file: expected a result directory, or nothing");
  EXPECT_EQ(start("home"), "home/surveyvectorization: expected a result directory; thesis.txt does not belong in one");
  EXPECT_EQ(start("file/below"), "file: expected a folder that can be created (Not a directory)");
  EXPECT_EQ(tree(), before);
}

}  // namespace
}  // namespace kelvar_platform::test
