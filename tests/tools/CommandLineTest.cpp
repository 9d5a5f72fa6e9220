#include <gtest/gtest.h>

#include "tools/Command.h"

namespace kelvar_test {

namespace {

using testing::Test;
using Words = std::vector<std::string>;

constexpr const char* kRun = R"({"formatVersion": 1, "hostName": "node17"})";

std::string collection(const std::string& dataKind, const std::string& details = "") {
  return R"({"formatVersion": 1, "dataKind": ")" + dataKind + R"(", "details": [)" + details + "]}";
}

// A folder with a project in good order, and others in bad order beside it.
class CommandLine : public Test {
 protected:
  CommandLine() {
    scratch_.write("good/survey/result.json", kRun);
    scratch_.write("good/survey/collection.json", collection("survey"));
    scratch_.write("sub/survey/result.json", kRun);
    scratch_.write("sub/survey/surveyvectorization/collection.json", collection("surveyvectorization"));
    scratch_.write("torn/survey/result.json", kRun);
    scratch_.write("torn/survey/collection.json", R"({"formatVersion": 1, "dataKind": "survey", "details": [)");
    scratch_.write("torn/annotations.db", "no database, whatever its name says, however long it is");
    scratch_.write("bare/survey/surveyvectorization/collection.json", collection("surveyvectorization"));
    scratch_.write("stranger/map/result.json", kRun);
    scratch_.write("stranger/map/collection.json", collection("survey"));
    scratch_.write("empty/notes.txt", "");
  }

  [[nodiscard]] Outcome kelvar(const Words& arguments) const { return kelvarIn(scratch_.path(), arguments); }
  [[nodiscard]] Outcome shell(const std::string& line) const { return shellIn(scratch_.path(), line); }

  Scratch scratch_;
};

struct Row {
  Words arguments;
  std::string sentence;  // a part of standard error that the line must say; empty where it must say nothing
};

TEST_F(CommandLine, UsageErrorsSayWhatWasExpectedAndPrintNothing) {
  const Row rows[] = {
      {{}, "subcommand is required"},
      {{"reprot", "good"}, "unknown subcommand 'reprot'; did you mean 'report'?"},
      {{"annotate", "db", "mvoe", "1"}, "unknown subcommand 'mvoe'; did you mean 'move'?"},
      {{"--versoin"}, "unknown option '--versoin'; did you mean '--version'?"},
      {{"report", "good", "--srot", "label"}, "unknown option '--srot'; did you mean '--sort'?"},
      {{"annotate", "--all", "db", "list"}, "unknown option '--all'"},
      {{"annotate", "db", "add", "--kidn", "task"}, "unknown option '--kidn'; did you mean '--kind'?"},
      {{"report"}, "nothing to report: expected a PROJECT"},
      {{"report", "nowhere"}, "PROJECT: expected a directory, not 'nowhere'"},
      {{"report", "nowhere", "--map", "good/survey"}, "expected a directory, not 'nowhere'"},
      {{"report", "empty"}, "nothing to report stands in 'empty'"},
      {{"report", "good", "sub"}, "unexpected argument 'sub'"},
      {{"report", "good", "--survey="}, "--survey: expected a path"},
      {{"report", "good", "--sort", "labl"}, "did you mean 'label'?"},
      {{"report", "good", "--sort", "15"}, "0 to 14, not '15'"},
      {{"report", "good", "--sort", "1", "--sort", "2"}, "--sort: expected once, not 2 times"},
      {{"report", "good", "--hide-kind", "correctness"}, "--hide-kind: expected survey"},
      {{"report", "good", "--hide-detail-kind", "0"}, "expected 1 (hot spots) or 2 (loops), not '0'"},
      {{"report", "good", "--hide-annotation-kind", "end-tsak"}, "did you mean 'end-task'?"},
      {{"report", "good", "--format", "jsno"},
       "--format: expected text, json or csv, not 'jsno'; did you mean 'json'?"},
      {{"report", "good", "--format", "csv", "--wide"}, "--wide: expected with the text format only"},
      {{"report", "good", "--match", "a(b"}, "--match: expected a regular expression, not 'a(b': missing ): a(b"},
      {{"report", "good", "--top", "0"}, "--top: expected a number of rows from 1, not '0'"},
      {{"report", "good", "--columns", "label,survey.cputime"}, "'survey.cputime'; did you mean 'survey.cpuTime'?"},
      {{"report", "good", "--columns", "label,"}, "--columns: expected names of columns, separated by commas, not ''"},
      {{"status"}, "nothing to report: expected a PROJECT"},
      {{"status", "good", "--fail-on", "exact"}, "--fail-on: expected approximate or none, not 'exact'"},
      {{"annotate", "db", "add", "--kind", "all", "--label", "a", "--at", "f:1"}, "--kind: expected the name"},
      {{"annotate", "db", "move", "1", "--at", "f"}, "--at: expected FILE:LINE or FILE:LINE:COLUMN"},
      {{"annotate", "db", "move", "1", "--at", ":7"}, "not ':7'"},
      {{"annotate", "db", "move", "1", "--at", "f:2147483648"}, "up to 2147483647"},
      {{"annotate", "db", "remove", "0x1"}, "SEQUENCE: expected a site's number, not '0x1'"},
      {{"annotate", "db", "remove", "\x1b[2J"}, R"(not '\x1b[2J')"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.sentence);
    const Outcome outcome = kelvar(row.arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.starts_with("kelvar: ")) << outcome.err;
    EXPECT_NE(outcome.err.find(row.sentence), std::string::npos) << outcome.err;
  }
  EXPECT_FALSE(std::filesystem::exists(scratch_.path() / "db"));
}

TEST_F(CommandLine, WhatCannotBeReadIsNamedAndTheRestReported) {
  const Row rows[] = {
      {{"report", "torn"}, "kelvar: torn/survey/collection.json: byte "},
      {{"report", "bare"}, "kelvar: bare/survey/result.json: "},
      {{"report", "good/", "--annotations", "./none.db"}, "kelvar: none.db: "},
      {{"report", "good", "--map", "good/../none//"}, "kelvar: none/result.json: "},
      {{"report", "--survey-vectorization", "good/survey/surveyvectorization"}, "good/survey/surveyvectorization/coll"},
      {{"report", "stranger", "--survey", "none"}, "kelvar: stranger/map: expected a result of kind map\n"},
      {{"annotate", "none.db", "list"}, "kelvar: none.db: "},
      {{"annotate", "torn/annotations.db", "remove", "1"}, "kelvar: torn/annotations.db: "},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.sentence);
    const Outcome outcome = kelvar(row.arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out.find("Collection Details\n") != std::string::npos, row.arguments.front() == "report");
    EXPECT_NE(outcome.err.find(row.sentence), std::string::npos) << outcome.err;
  }
}

TEST_F(CommandLine, ReadProjectsAreReportedWithoutAWord) {
  const Row rows[] = {
      {{"report", "good"}, "\naggregate results: 1\n"},
      {{"report", "./good//", "--verbose"}, "survey - exact match current\n"},
      {{"report", "sub", "--verbose"}, "survey - not present\nsurveyvectorization - exact match current\n"},
      {{"report", "torn", "--survey", "good/survey", "--annotations", "db"}, "\naggregate results: 1\n"},
      {{"report", "--sort", "14", "--", "good"}, "hostname: node17\n"},
      {{"--version"}, "kelvar 2.1.7\n"},
      {{"--help"}, "Usage: kelvar [OPTIONS] SUBCOMMAND\n"},
      {{"report", "--help"}, "14 general-kind-locator\n"},
      {{"annotate", "db", "move", "--help"}, "Usage: kelvar annotate move [OPTIONS] SEQUENCE\n"},
  };
  EXPECT_EQ(kelvar({"annotate", "db", "add", "--kind", "0", "--label", "a", "--at", "f:1"}).status, 0);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.sentence);
    const Outcome outcome = kelvar(row.arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find(row.sentence), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST_F(CommandLine, StandardOutputMayFailOrGoAway) {
  EXPECT_EQ(kelvar({"annotate", "db", "add", "--kind", "0", "--label", "a", "--at", "f:1"}).out, "1\n");
  const Outcome full = shell("\"$1\" report good >/dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.err, "kelvar: standard output: No space left on device\n");

  const Outcome closed = shell("\"$1\" annotate db list >&-");
  EXPECT_EQ(closed.status, 1);
  EXPECT_EQ(closed.err, "kelvar: standard output: Bad file descriptor\n");
  EXPECT_EQ(kelvar({"annotate", "db", "list"}).out, "1\tparallel\ta\tf:1\n");

  const Outcome gone = shell("{ sleep 0.2; trap '' PIPE; \"$1\" report good; echo $? >status; } | true; cat status");
  EXPECT_EQ(gone.out, "0\n");
  EXPECT_EQ(gone.err, "");
}

}  // namespace

}  // namespace kelvar_test
