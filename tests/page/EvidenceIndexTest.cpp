#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "Annotations.h"
#include "EvidenceIndex.h"
#include "support/Scratch.h"

namespace kelvar_page {
namespace {

/// A project whose loops are those of the details given, with a line of evidence for each: its number.
std::map<std::string, std::string> evidenceByLabel(const std::string& details, int count) {
  const support::Scratch scratch;
  kelvar_platform::AnnotationEditor editor(scratch.path("annotations.db"),
                                           kelvar_platform::AnnotationEditor::Open::createIfMissing);
  editor.add(sitenotes::annotation_t::parallel, "first", "src/a.cpp", 3, 1);
  editor.add(sitenotes::annotation_t::parallel, "second", "src/b.cpp", 9, 1);
  const std::string loops = "survey/surveyvectorization/";
  scratch.write("survey/result.json", R"({"formatVersion":1})");
  scratch.write(loops + "collection.json",
                R"({"formatVersion":1,"dataKind":"surveyvectorization","details":[)" + details + "]}");
  std::string evidence;
  for (int detail = 0; detail < count; ++detail) {
    const std::string number = std::to_string(detail);
    evidence += R"({"detail":)" + number + R"(,"kind":"missed","text":")" + number + "\"}\n";
  }
  scratch.write(loops + "evidence.jsonl", evidence);
  const auto database = kelvar_platform::openAnnotationDatabase(scratch.path("annotations.db"));
  kelvar::SummaryData data(database);
  data.addSummaryData(scratch.path("survey/surveyvectorization"), database);
  EvidenceIndex index;
  std::vector<std::string> complaints;
  kelvar_2_1_7::PerKind<std::string> results;
  results[digestio::kSurveyVectorization] = scratch.path("survey/surveyvectorization");
  index.read(data, results, complaints);
  EXPECT_EQ(complaints, std::vector<std::string>());
  std::map<std::string, std::string> found;
  for (int row = 0; row < data.num_items(); ++row) {
    const Site site = siteOf(*data.item(row));
    for (const Evidence* const line : index.of(site)) found[site.label] += line->text;
  }
  return found;
}

std::string loop(const std::string& label, const std::string& place) {
  return R"({"label":")" + label + R"(","column":1,)" + place +
         R"(,"surveyVectorization":{"state":0,"selfTime":1,"totalTime":1,"id":1,"priority":1}})";
}

TEST(EvidenceIndex, WhatWasFoldedIntoOneRowIsFoundByIt) {
  struct Case {
    const char* what;
    std::vector<std::string> details;
    std::map<std::string, std::string> want;
  };
  const std::string a3 = R"("file":"src/a.cpp","line":3)";
  const std::string a7 = R"("file":"src/a.cpp","line":7)";
  const std::string b9 = R"("file":"src/b.cpp","line":9)";
  for (const auto& [what, details, want] : {
           Case{"two sites", {loop("first", a3), loop("second", b9)}, {{"first", "0"}, {"second", "1"}}},
           Case{"two versions of a loop", {loop("first", a3), loop("first", a3)}, {{"first", "01"}}},
           Case{"versions of two, in turn",
                {loop("second", b9), loop("first", a3), loop("second", b9), loop("first", a3)},
                {{"first", "13"}, {"second", "02"}}},
           Case{"neighbours in a file", {loop("first", a3), loop("other", a7)}, {{"first", "01"}}},
       }) {
    std::string all;
    for (const std::string& detail : details) all += (all.empty() ? "" : ",") + detail;
    EXPECT_EQ(evidenceByLabel(all, static_cast<int>(details.size())), want) << what;
  }
}

TEST(EvidenceIndex, SaysWhatALineTookOnce) {
  EvidenceIndex index;
  const auto share = [&](std::int64_t count, const char* file, int line, const char* function, const char* role) {
    index.add(nullptr, {.kind = EvidenceKind::share,
                        .count = count,
                        .places = {{.role = role, .file = file, .line = line, .function = function}}});
  };
  share(2000000, "src/a.cpp", 3, "f", "line");
  share(1500000, "src/a.cpp", 3, "f", "line");  // of a site within the first
  share(500000, "src/a.cpp", 3, "g", "line");
  share(9000000, "src/a.cpp", 3, "", "own lines");
  share(4000000, "other/a.cpp", 3, "f", "line");
  share(250000, "./src/a.cpp", 4, "f", "line");
  const std::map<int, double> want{{3, 2.5}, {4, 0.25}};
  EXPECT_EQ(index.lineTimesIn(toolbelt::path_t("src/a.cpp")), want);
  EXPECT_EQ(index.lineTimesIn(toolbelt::path_t("/home/me/src/a.cpp")), want);
  EXPECT_EQ(index.lineTimesIn(toolbelt::path_t("src/b.cpp")), (std::map<int, double>()));
}

}  // namespace
}  // namespace kelvar_page
