// The formats of a report, held against one another and against the schema by a script, and the order of rows.
#include <gtest/gtest.h>

#include <boost/shared_ptr.hpp>

#include "Annotations.h"
#include "kelvar/SummaryDataLoader.h"
#include "tools/Command.h"

namespace kelvar_test {

namespace {

namespace fs = std::filesystem;

const fs::path kData = KELVAR_TEST_FOLDER;

constexpr const char* kSurvey = R"({"formatVersion": 1, "dataKind": "survey", "programMaxGain": 1e300, "details": [
  {"label": "say \"hi\", there", "file": "/src/a,b.cpp", "line": 7, "survey": {"cpuTime": 0.1, "priority": 1, "id": 1}},
  {"label": "two\nlines\r\n", "file": "/src/\"a\".cpp", "line": 7, "survey": {"cpuTime": 1e22, "priority": 1, "id": 2}},
  {"label": " zero\u0000byte ", "file": "z\u0000.cpp", "line": 1, "survey": {"cpuTime": 2, "priority": 3, "id": 3}},
  {"label": "\u4e16\u754c \u001b[2J e\u0301", "file": "/src/\u00e9.cpp", "line": 12, "column": 3, "detailKind": 2,
   "survey": {"cpuTime": 2.5, "priority": 1, "id": 4}}]})";

class Formats : public testing::Test {
 protected:
  Formats() {
    fs::copy(kData / "project", folder() / "project", fs::copy_options::recursive);
    fs::copy(kData / "absurd", folder() / "absurd", fs::copy_options::recursive);
    EXPECT_EQ(shellIn(folder(), "sh project/annotate.sh \"$1\"").err, "");
  }

  [[nodiscard]] const fs::path& folder() const { return scratch_.path(); }
  void check(const std::string& what, const std::string& project) const {
    const Outcome outcome =
        runProgram(folder(), {"/usr/bin/env", "python3", kData / "formats.py", KELVAR_COMMAND,
                              fs::path(KELVAR_SOURCE_FOLDER) / "docs/report.schema.json", what, project});
    EXPECT_EQ(outcome.out, "ok\n") << project << '\n' << outcome.err;
  }
  [[nodiscard]] std::string report(std::vector<std::string> options) const {
    options.insert(options.begin(), "report");
    const Outcome outcome = kelvarIn(folder(), std::move(options));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  Scratch scratch_;
};

TEST_F(Formats, TextJsonAndCsvTellTheSameFigures) {
  check("figures", "project");
  check("figures", "absurd");
  // A path may hold bytes that are no UTF-8: those of the log files, here.
  const std::string broken = "odd\xff\xc3";
  scratch_.write(broken + "/survey/result.json", R"({"formatVersion": 1, "hostName": "a\"b"})");
  scratch_.write(broken + "/survey/collection.json", kSurvey);
  scratch_.write(broken + "/survey/application.log", "");
  check("figures", broken);
  EXPECT_NE(report({broken, "--format", "json"}).find("\"applicationLog\":\"odd\xef\xbf\xbd\xef\xbf\xbd/survey/"),
            std::string::npos);
}

TEST_F(Formats, RowsDoNotDependOnTheOrderOfTheDetails) {
  // Loops and hot spots that tie on all but their figures.
  scratch_.write("twins/survey/result.json", R"({"formatVersion": 1})");
  std::string details;
  for (int twin = 0; twin < 24; ++twin) {
    details += (twin == 0 ? "" : ",") + std::string(R"({"label": "twin", "file": "f.cpp", "line": 3, "detailKind": )") +
               std::to_string(twin % 3) + R"(, "survey": {"cpuTime": )" + std::to_string(twin % 5) +
               R"(, "priority": 1, "id": )" + std::to_string(twin / 2) + "}}";
  }
  scratch_.write("twins/survey/collection.json",
                 R"({"formatVersion": 1, "dataKind": "survey", "details": [)" + details + "]}");
  check("order", "twins");
  check("order", "project");
}

TEST_F(Formats, RowsDoNotDependOnFiltersThatWereOn) {
  using namespace kelvar_2_1_7;
  const auto database = kelvar_platform::openAnnotationDatabase((folder() / "project/annotations.db").native());
  kelvar_platform::installDatabase(database);
  SummaryData data(database);
  for (const char* const piece : {"survey", "survey/surveyvectorization", "suitability", "dependencies", "map"}) {
    data.addSummaryData((folder() / "project" / piece).native(), database);
  }
  kelvar_platform::removeScanner();
  const auto rows = [&data] {
    std::vector<const SummaryItem*> items;
    for (int index = 0; index < data.num_items(); ++index) items.push_back(data.item(index));
    return items;
  };
  for (int ordering = 0; ordering < kSummaryMappingCount; ++ordering) {
    data.setMapping(static_cast<SummaryMapping>(ordering), false);
    const auto want = rows();
    for (const bool enable : {false, true}) {
      data.setSummaryKindEnable(digestio::kSurvey, enable);
      data.setSummaryDetailKindFilter(enable, digestio::kLoop, sitenotes::annotation_t::all_kinds);
      EXPECT_EQ(rows() == want, enable) << ordering;
    }
    for (const bool enable : {false, true}) {
      data.setSummaryDetailKindFilter(enable, digestio::kAnnotatedSite, sitenotes::annotation_t::all_kinds);
      EXPECT_EQ(rows() == want, enable) << ordering;
    }
  }
}

TEST_F(Formats, WideColumnsStandUnderOneAnotherOnATerminal) {
  scratch_.write("wide/survey/result.json", R"({"formatVersion": 1})");
  scratch_.write("wide/survey/collection.json", kSurvey);
  EXPECT_EQ(report({"wide", "--wide", "--columns", "label,survey.cpuTime,currentPlace.file", "--match", "src"}),
            "                 Survey    Current place\n"
            "Label            CPU time  File\n"
            "_______________  ________  _____________\n"
            "two\\nlines\\r\\n      1e+22  /src/\"a\".cpp\n"
            "say \"hi\", there       0.1  /src/a,b.cpp\n"
            "\xe4\xb8\x96\xe7\x95\x8c \\x1b[2J e\xcc\x81        2.5  /src/\xc3\xa9.cpp\n");
}

TEST_F(Formats, RowsAndColumnsAreChosenInTheOrderOfTheView) {
  const std::string all = report({"project", "--format", "csv", "--columns", "label,survey.id", "--sort", "survey-id"});
  EXPECT_EQ(all.substr(0, 59), "label,survey.id\r\nmultiply,1\r\nhash,2\r\nmultiply loop,3\r\nsolve");
  const std::vector<std::string> few{"--columns", "label", "--sort", "survey-id", "--match", "^(m|h)", "--top", "2"};
  std::vector<std::string> options{"project", "--format", "csv"};
  options.insert(options.end(), few.begin(), few.end());
  EXPECT_EQ(report(options), "label\r\nmultiply\r\nhash\r\n");
  options[2] = "text";  // then the table is the wide one
  EXPECT_EQ(report(options), "\nLabel\n________\nmultiply\nhash\n");
  EXPECT_NE(report({"project", "--wide", "--verbose"}).find("Match"), std::string::npos);
}

TEST_F(Formats, WhatCannotBeReadStandsInTheObject) {
  scratch_.write("project/map/collection.json", "\xff");
  const Outcome outcome = kelvarIn(folder(), {"report", "project", "--format", "json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("\"unreadable\":[\n\"project/map/collection.json: "), std::string::npos) << outcome.out;
}

}  // namespace

}  // namespace kelvar_test
