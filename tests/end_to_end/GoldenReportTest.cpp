// Reports of whole projects, held against the files in golden/, which are named after their options. With
// KELVAR_UPDATE_GOLDEN set in the environment they are written anew, to be reviewed as a difference.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tools/Command.h"

namespace kelvar_test {

namespace {

namespace fs = std::filesystem;

const fs::path kData = KELVAR_TEST_FOLDER;

// A copy of the two projects, the first with its annotations: what a database records depends on where it is made.
class GoldenReport : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    scratch_ = new Scratch;
    for (const char* const project : {"project", "absurd"}) {
      fs::copy(kData / project, scratch_->path() / project, fs::copy_options::recursive);
    }
    const Outcome annotated = shellIn(scratch_->path(), "sh project/annotate.sh \"$1\"");
    ASSERT_EQ(annotated.err, "");
  }
  static void TearDownTestSuite() {
    delete scratch_;
    scratch_ = nullptr;
  }

  static void expectGolden(const std::string& options, int status = 0);

  static Scratch* scratch_;
};
Scratch* GoldenReport::scratch_ = nullptr;

// `project --sort kind` is in project_sort-kind.txt.
fs::path goldenFile(const std::string& options) {
  std::string name;
  for (std::size_t at = 0; at < options.size(); ++at) {
    const bool next = options.compare(at, 3, " --") == 0;
    if (next) at += 2;
    name += next ? '_' : options[at] == ' ' || options[at] == '/' ? '-' : options[at];
  }
  return kData / "golden" / (name.substr(name.find_first_not_of('-')) + ".txt");
}

void GoldenReport::expectGolden(const std::string& options, int status) {
  SCOPED_TRACE(options);
  std::vector<std::string> arguments{"report"};
  std::istringstream in(options);
  for (std::string word; in >> word;) arguments.push_back(word);
  const Outcome outcome = kelvarIn(scratch_->path(), arguments);
  EXPECT_EQ(outcome.status, status);
  EXPECT_EQ(outcome.err, "");
  if (std::getenv("KELVAR_UPDATE_GOLDEN")) std::ofstream(goldenFile(options), std::ios::binary) << outcome.out;
  EXPECT_EQ(outcome.out, contentOf(goldenFile(options)));
}

TEST_F(GoldenReport, AllThatStandsInTheProject) {
  expectGolden("project");
  expectGolden("project --verbose");
  expectGolden("project --verbose --reverse");
}

TEST_F(GoldenReport, EachResultAloneWithTheAnnotations) {
  for (const char* const piece :
       {"survey project/survey", "survey-vectorization project/survey/surveyvectorization",
        "suitability project/suitability", "dependencies project/dependencies", "map project/map"}) {
    expectGolden("--annotations project/annotations.db --verbose --" + std::string(piece));
  }
  expectGolden("--annotations project/annotations.db");
  expectGolden("--map project/map");
}

TEST_F(GoldenReport, EveryOrderingByNumberAndByName) {
  for (int ordering = 0; ordering < 15; ++ordering) expectGolden("project --sort " + std::to_string(ordering));
  expectGolden("project --sort survey-cpu-time --reverse --verbose");
  for (const char* const ordering : {"dependencies-errors", "dependencies-warnings", "general-kind-locator"}) {
    expectGolden("project --verbose --sort " + std::string(ordering));
  }
}

TEST_F(GoldenReport, HiddenSites) {
  for (const char* const hidden :
       {"--hide-kind survey", "--hide-kind survey --hide-kind surveyvectorization --hide-kind map",
        "--hide-kind survey --hide-kind surveyvectorization --hide-kind suitability --hide-kind dependencies "
        "--hide-kind map",
        "--hide-detail-kind 1", "--hide-detail-kind 2", "--hide-annotation-kind end-parallel",
        "--hide-annotation-kind 18 --hide-annotation-kind task", "--hide-annotation-kind all",
        "--hide-detail-kind 1 --hide-detail-kind 2 --hide-annotation-kind all"}) {
    expectGolden("project " + std::string(hidden));
  }
}

TEST_F(GoldenReport, CellsThatOutgrowTheirColumns) {
  expectGolden("absurd");
  expectGolden("absurd --verbose");
}

TEST_F(GoldenReport, NamesAndNumbersOfOrderingsAreOne) {
  const Outcome byNumber = kelvarIn(scratch_->path(), {"report", "project", "--sort", "13"});
  const Outcome byName = kelvarIn(scratch_->path(), {"report", "project", "--sort", "dependencies-warnings"});
  EXPECT_EQ(byNumber.out, byName.out);
}

}  // namespace

}  // namespace kelvar_test
