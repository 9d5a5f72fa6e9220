// Whether the table and the report say it in the words, and at the places, that their readers know.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/FakeResult.h"
#include "support/Fakes.h"
#include "view/SummaryReport.h"

using namespace kelvar_2_1_7;
using support::detail;
using support::FakeDetail;
using support::FakeResult;

namespace {

// The last line of a table of one item, without its newline.
std::string row(FakeDetail detail) {
  const std::string text = support::listOf(support::itemFrom(detail)).asString(false, true, true, true, true, true);
  const std::size_t begin = text.rfind('\n', text.size() - 2) + 1;
  return text.substr(begin, text.size() - 1 - begin);
}

std::string blanks(std::size_t count) {
  return std::string(count, ' ');
}

const std::string kPlain = "parallel" + blanks(6) + "l" + blanks(16) + "a.cpp:1" + blanks(22);

TEST(ItemTable, CellsAndWhatStandsInForThem) {
  const double nan = std::nan("");
  const std::string longNumber = std::to_string(-1e300);
  const auto loop = [] { return detail("l", "a.cpp:1"); };
  const auto task = sitenotes::annotation_t::task;
  const struct {
    const char* name;
    FakeDetail detail;
    std::string want;
  } kCases[] = {
      {"nothing", loop(), "parallel" + blanks(52) + blanks(98)},
      {"survey", loop().survey({12.345, 1, 7}), kPlain + "  12.35 1  7 " + blanks(85)},
      {"long number, cut", loop().survey({-1e300, 1, 7}), kPlain + longNumber.substr(0, 255) + blanks(85)},
      {"no number", loop().survey({-nan, -5, 1234}), kPlain + "   -nan -5 1234 " + blanks(85)},
      {"vectorization", loop().vectorization({2, 1.5, 2.5, 77, 3}),
       kPlain + blanks(13) + "2    1.50    2.50     77 3 " + blanks(65)},
      {"suitability", loop().suitability({3.25, 8, 0b01101, 4.5, 2.25}),
       kPlain + blanks(33) + "  3.25s  8 hlchl    4.50    2.25 " + blanks(32)},
      {"suitability of a task", loop().reports(task).suitability({3.25, 8, 31, 4.5, 2.25}),
       "task" + kPlain.substr(4).replace(0, 4, "    ") + blanks(33) + "  3.25s" + blanks(26) + blanks(32)},
      {"warnings past 32 bits", loop().correctness({-1, {2147483647, 2147483647}}),
       kPlain + blanks(66) + "     -1 4294967294 " + blanks(16)},
      {"strides", loop().map({{10, -20, 9223372036854775807}}),
       kPlain + blanks(82) + "     10 /     -20 / 9223372036854775807 "},
  };
  for (const auto& each : kCases) EXPECT_EQ(row(each.detail), each.want) << each.name;
}

TEST(ItemTable, SourcePart) {
  const struct {
    std::string label;
    const char* place;
    int detailKind;
    int annotationKind;
    std::string want;
  } kCases[] = {
      {"a label of 20 bytes!", "src/a.cpp:1:2", 0, 18, "teams         a label of 20 by a.cpp:1:2"},
      {std::string("cut\0here", 8), "a.cpp:-3", 1, 0, "HotSpotHotSpo cut              a.cpp:-3"},
      {"fifteen bytes..\xc3\xa4", "", 2, 0, "(null)        fifteen bytes..\xc3 "},
      {"", "src/:12", 0, 0, "parallel                      "},
      {"", "a_file_with_a_long_name_in_it.cpp:1", 0, 19, blanks(31) + "a_file_with_a_long_name_in_i"},
      {"", "a.cpp:0:5", 3, 0, blanks(31) + "a.cpp:0:5"},
      {"", "a.cpp:0", 0, -1, blanks(31) + "a.cpp:0"},
  };
  for (const auto& each : kCases) {
    FakeDetail source = detail(each.label, each.place);
    source.kind(static_cast<digestio::SummaryDetailKind>(each.detailKind));
    source.reports(static_cast<support::Kind>(each.annotationKind)).map();
    EXPECT_EQ(row(source).substr(0, 60), each.want + blanks(60 - each.want.size()));
  }
}

TEST(ItemTable, HeaderOfSomeKinds) {
  EXPECT_EQ(
      SummaryItems().asString(true, false, true, false, false, true),
      "                            Source                             |    SurveyVectorization      |      MAP         "
      "  \n"
      "C                                                              |R    Self   Total    P   |R                  \n"
      "S #     Kind           Label               File/line           |S #  Time   Time Id r|S # Strides\n"
      "_ _ _____________ ________________ ____________________________|_ _ _______ _______ ______ _|_ _ _______\n");
}

struct Report {
  ViewSettings settings;
  SummaryItems items;
  FakeResult aggregate;
  PerKind<SummaryDataStatus> statuses{};
  PerKind<const SummaryResult*> results{};

  std::string text(bool verbose) const {
    return SummaryReport{statuses, settings, items, 8, 7, 2.5, aggregate, results}.asString(verbose);
  }
  // The start-time line of the aggregate's collection.
  std::string started() const {
    const std::string all = text(false);
    const std::size_t begin = all.find("Collection started: ") + 20;
    return all.substr(begin, all.find('\n', begin) - begin);
  }
};

TEST(SummaryReport, AllOfIt) {
  Report report;
  report.statuses[digestio::kCorrectness] = kApproximateMatchCurrent;
  report.settings.setMapping(kSortLabel, true);
  report.aggregate.count = 2;
  report.aggregate.time = 1700000000;
  report.aggregate.duration = static_cast<std::uint64_t>(-5);
  report.aggregate.text = std::string("node\0cut", 8);
  FakeResult loops;
  report.results[digestio::kCorrectness] = &report.aggregate;
  report.results[digestio::kSurveyVectorization] = &loops;

  const std::string text = report.text(true);
  EXPECT_EQ(text.substr(0, text.find("    ")),
            "survey - not present\nsurveyvectorization - not present\nsuitability - not present\n"
            "dependencies - approximate match current\nmap - not present\ndisplay: sort label (reverse)\n\n");
  const std::string times =
      "Collection started: Tue Nov 14 22:13:20 2023\nElapsed: -5\n"
      "Finalization started: N/A\nElapsed: 2\n";
  EXPECT_EQ(text.substr(text.find("\nnum procs")),
            "\nnum procs: 8\nparadigm: 7\nprog max gain: 2.500000\n\naggregate results: 2\n" + times +
                "\nhostname: node\ncpu count: 4\ncpu freq: 18446744073709551615\n"
                "\nos: node\napp log: a.log\ncoll log: \ncmd log: c.log\ndebug missing: 1\n"
                "\nCollection Details\n\nDependencies results: 2\n" +
                times);
}

TEST(SummaryReport, PiecesAreCutAtTheirBuffer) {
  Report report;
  report.aggregate.text = std::string(2000, 'h');
  const std::string text = report.text(false);
  EXPECT_EQ(text.substr(text.find("\nhostname")), "\nhostname: " + std::string(1023 - 11, 'h') +
                                                      "\nos: " + std::string(1023 - 5, 'h') + "\nCollection Details\n");
}

TEST(SummaryReport, TimesOnTheCalendar) {
  const struct {
    std::uint64_t time;
    const char* want;
  } kCases[] = {{0, "N/A"},          {1, "Thu Jan 01 00:00:01 1970"},
                {UINT64_MAX, "N/A"}, {67767976233532799, "Tue Dec 31 23:59:59 2147483647"},
                {INT64_MAX, "N/A"},  {std::uint64_t{1} << 63, "N/A"}};
  for (const auto& each : kCases) {
    Report report;
    report.aggregate.time = each.time;
    EXPECT_EQ(report.started(), each.want);
  }
}

}  // namespace
