// What a user sees whose annotations were edited since a result was collected.
#include <gtest/gtest.h>

#include <sstream>

#include "tools/Command.h"

namespace kelvar_test {

namespace {

class Walk : public testing::Test {
 protected:
  std::string kelvar(const std::vector<std::string>& arguments) const {
    const Outcome outcome = kelvarIn(scratch_.path(), arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  // The report's row of the site, without the blanks that pad it.
  std::string rowOf(const std::string& label) const {
    std::istringstream report(kelvar({"report", "--verbose", "run"}));
    for (std::string line; std::getline(report, line);) {
      if (line.find(label) == std::string::npos) continue;
      std::istringstream words(line);
      std::string row;
      for (std::string word; words >> word;) row += (row.empty() ? "" : " ") + word;
      return row;
    }
    return "no row";
  }

  Scratch scratch_;
};

// One that moved is README's walk, which examples/readme.sh takes.
TEST_F(Walk, ASiteThatWasDisabledSinceTheRunMatchesNothing) {
  scratch_.write("run/survey/result.json", R"({"formatVersion": 1})");
  scratch_.write("run/survey/collection.json", R"({"formatVersion": 1, "dataKind": "survey", "details": [
    {"label": "solver", "file": "src/solver.cpp", "line": 118, "survey": {"cpuTime": 2.5, "priority": 1, "id": 7}}]})");
  kelvar({"annotate", "run/annotations.db", "add", "--kind", "parallel", "--label", "solver", "--at",
          "src/solver.cpp:118"});
  kelvar({"annotate", "run/annotations.db", "add", "--kind", "task", "--label", "row", "--at", "src/row.cpp:7"});
  kelvar({"annotate", "run/annotations.db", "snapshot", "./run/survey/"});
  EXPECT_EQ(rowOf("survey - "), "survey - exact match current");

  kelvar({"annotate", "run/annotations.db", "disable", "1"});
  EXPECT_EQ(rowOf("solver"), "? 1 parallel solver solver.cpp:118 ? 1 2.50 1 7");
}

TEST_F(Walk, AProjectMayBeReportedFromAnywhere) {
  scratch_.write("run/survey/result.json", R"({"formatVersion": 1})");
  scratch_.write("run/survey/collection.json", R"({"formatVersion": 1, "dataKind": "survey"})");
  kelvar({"annotate", "run/annotations.db", "add", "--kind", "0", "--label", "a", "--at", "f:1"});
  kelvar({"annotate", "run/annotations.db", "snapshot", (scratch_.path() / "run/survey").native()});
  kelvar({"annotate", "run/annotations.db", "move", "1", "--at", "f:2"});
  // The state that was recorded, not one of today: with a state of today, the site would match exactly.
  const std::string fromOutside = kelvar({"report", "--verbose", "run"});
  EXPECT_NE(fromOutside.find("survey - approximate match current\n"), std::string::npos) << fromOutside;
  EXPECT_EQ(fromOutside, kelvarIn(scratch_.path() / "run/survey", {"report", "--verbose", ".."}).out);
}

}  // namespace

}  // namespace kelvar_test
