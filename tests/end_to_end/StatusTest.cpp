// How fresh results are: what matches, what moved, and what a build can act on.
#include <gtest/gtest.h>

#include "tools/Command.h"

namespace kelvar_test {

namespace {

class Status : public testing::Test {
 protected:
  Status() {
    scratch_.write("run/survey/result.json", R"({"formatVersion": 1})");
    scratch_.write("run/survey/collection.json", R"({"formatVersion": 1, "dataKind": "survey", "details": [
      {"label": "solver", "file": "src/solver.cpp", "line": 118, "survey": {"cpuTime": 2.5, "priority": 1, "id": 7}}]})");
    annotate({"add", "--kind", "parallel", "--label", "solver", "--at", "src/solver.cpp:118"});
    annotate({"snapshot", "run/survey"});
  }

  void annotate(std::vector<std::string> edit) const {
    edit.insert(edit.begin(), {"annotate", "run/annotations.db"});
    EXPECT_EQ(kelvar(edit).status, 0);
  }
  [[nodiscard]] Outcome kelvar(const std::vector<std::string>& arguments) const {
    return kelvarIn(scratch_.path(), arguments);
  }
  // The exit statuses without --fail-on, with `approximate` and with `none`.
  [[nodiscard]] std::vector<int> statuses() const {
    return {kelvar({"status", "run"}).status, kelvar({"status", "run", "--fail-on", "approximate"}).status,
            kelvar({"status", "run", "--fail-on", "none"}).status};
  }

  Scratch scratch_;
};

using Statuses = std::vector<int>;

TEST_F(Status, FollowsASiteThatMoves) {
  const std::string rest =
      "surveyvectorization          -             -         -  not there\n"
      "suitability                  -             -         -  not there\n"
      "dependencies                 -             -         -  not there\n"
      "map                          -             -         -  not there\n";
  const std::string heading = "Analysis                 exact   approximate      none  as a whole\n";
  EXPECT_EQ(kelvar({"status", "run"}).out,
            heading + "survey                       1             0         0  exact match current\n" + rest);
  EXPECT_EQ(statuses(), (Statuses{0, 0, 0}));

  annotate({"move", "1", "--at", "src/solver.cpp:115:3"});
  EXPECT_EQ(kelvar({"status", "run"}).out,
            heading + "survey                       0             1         0  approximate match current\n" + rest +
                "\nMoved since: label, from, to, by, seen by\n"
                "solver\tsrc/solver.cpp:118\tsrc/solver.cpp:115:3\t-3 lines\tsurvey\n");
  EXPECT_EQ(statuses(), (Statuses{0, 4, 0}));

  annotate({"disable", "1"});
  EXPECT_EQ(statuses(), (Statuses{0, 4, 4}));
  EXPECT_EQ(kelvar({"status", "run", "--fail-on", "none", "--hide-annotation-kind", "parallel"}).status, 0);
}

TEST_F(Status, NamesWhatCouldNotBeRead) {
  scratch_.write("run/map/result.json", "{}");
  const Outcome outcome = kelvar({"status", "run", "--fail-on", "none"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("-  could not be read: run/map\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.err.find("kelvar: run/map/result.json: "), std::string::npos) << outcome.err;
}

TEST_F(Status, WarnsWhereFilesShareALeaf) {
  EXPECT_EQ(kelvar({"status", "run"}).err, "");
  // The same file seen from elsewhere is no other.
  annotate({"add", "--kind", "parallel", "--label", "a", "--at", "/home/me/src/solver.cpp:9"});
  EXPECT_EQ(kelvar({"status", "run"}).err, "");
  annotate({"add", "--kind", "parallel", "--label", "b", "--at", "old/solver.cpp:9"});
  EXPECT_NE(kelvar({"status", "run"}).err.find("have one name: sites of the two could be taken for one\n"),
            std::string::npos);
}

TEST_F(Status, WarnsWhereTwoFilesWereTakenForOne) {
  annotate({"add", "--kind", "task", "--label", "row", "--at", "old/row.cpp:9"});
  annotate({"snapshot", "run/map"});
  scratch_.write("run/map/result.json", R"({"formatVersion": 1})");
  scratch_.write("run/map/collection.json", R"({"formatVersion": 1, "dataKind": "map", "details": [
    {"label": "row", "annotationKind": 2, "file": "new/row.cpp", "line": 7, "map": {"strides": [1, 2, 3]}}]})");
  EXPECT_EQ(kelvar({"status", "run"}).err,
            "kelvar: warning: 'row' is at 'old/row.cpp:9', and map saw it at 'new/row.cpp:7': two files of one name "
            "were taken for one\n");
}

}  // namespace

}  // namespace kelvar_test
