#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Pairing.h"

namespace kelvar_compare {
namespace {

using sitenotes::annotation_t;

Identity site(const std::string& label, const std::string& file, int line, Sort sort = Sort::annotated) {
  return {.label = label, .file = toolbelt::path_t(file), .line = line, .sort = sort};
}

Identity annotated(std::uint32_t database, unsigned long sequence, const std::string& label, const std::string& file,
                   int line) {
  Identity one = site(label, file, line);
  one.database = database;
  one.sequence = sequence;
  return one;
}

const Anchors& none(std::uint32_t) {
  static const Anchors kNone;
  return kNone;
}

/// `0:label 2:place -`: for each site of AFTER, which one of BEFORE it is and why.
std::string paired(const std::vector<Identity>& before, const std::vector<Identity>& after,
                   const AnchorsOf& anchorsOf = none) {
  const auto pointers = [](const std::vector<Identity>& sites) {
    std::vector<const Identity*> all;
    for (const Identity& one : sites) all.push_back(&one);
    return all;
  };
  std::string text;
  for (const Partner& one : pairSites(pointers(before), pointers(after), anchorsOf)) {
    text += text.empty() ? "" : " ";
    text += one.before == Partner::kNone ? "-" : std::to_string(one.before) + ":" + std::string(nameOf(one.by));
  }
  return text;
}

TEST(Pairing, SequencesCountWithinOneDatabaseAlone) {
  const std::vector<Identity> before{annotated(1, 7, "a", "x.cpp", 1), annotated(1, 8, "b", "x.cpp", 2)};
  EXPECT_EQ(paired(before, {annotated(1, 8, "a", "y.cpp", 9), annotated(1, 7, "b", "y.cpp", 8)}),
            "1:sequence 0:sequence");
  EXPECT_EQ(paired(before, {annotated(2, 8, "a", "y.cpp", 9), annotated(2, 7, "b", "y.cpp", 8)}), "0:label 1:label");
}

TEST(Pairing, LabelsHaveToBeUniqueOnBothSides) {
  EXPECT_EQ(paired({site("a", "x.cpp", 1), site("a", "x.cpp", 5)}, {site("a", "x.cpp", 3)}), "-");
  EXPECT_EQ(paired({site("a", "x.cpp", 1), site("a", "y.cpp", 5)}, {site("a", "y.cpp", 8)}), "1:label");
  EXPECT_EQ(paired({site("a", "x.cpp", 1)}, {site("a", "x.cpp", 8, Sort::function)}), "-");
  EXPECT_EQ(paired({site("", "x.cpp", 1)}, {site("", "y.cpp", 8)}), "-");
}

TEST(Pairing, RowsOfOneFunctionAreToldApartByWhatReportsThem) {
  Identity timed = site("work", "x.cpp", 10, Sort::function);
  timed.analyses = 1;
  Identity walked = timed;
  walked.analyses = 16;
  EXPECT_EQ(paired({timed, walked}, {walked, timed}), "1:label 0:label");
  EXPECT_EQ(paired({timed, timed, walked}, {timed, walked, timed}), "0:place 2:label 1:place");
}

TEST(Pairing, PlacesComeLastAndByTheirLeaf) {
  EXPECT_EQ(paired({site("old", "/a/x.cpp", 4, Sort::loop)}, {site("new", "/b/x.cpp", 4, Sort::loop)}), "0:place");
  EXPECT_EQ(paired({site("old", "x.cpp", 4, Sort::loop), site("moved", "x.cpp", 9, Sort::loop)},
                   {site("moved", "x.cpp", 4, Sort::loop), site("new", "x.cpp", 9, Sort::loop)}),
            "1:label -");
  EXPECT_EQ(paired({site("", "", 0)}, {site("", "", 0)}), "-");
}

TEST(Pairing, SurroundingsFindWhatHasAnotherLabelAndLine) {
  kelvar_sources::TextNumbers numbers;
  const auto print = [&](const std::string& text) {
    return kelvar_sources::fingerprintOf(
        annotation_t::parallel,
        {.rule = "omp", .text = text, .function = "work", .before = "int i;", .after = text + "();", .label = ""},
        numbers);
  };
  const Anchors old{{1, print("first")}, {2, print("second")}};
  const Anchors today{{5, print("second")}, {6, print("first")}};
  const AnchorsOf anchorsOf = [&](std::uint32_t database) -> const Anchors& { return database == 1 ? old : today; };
  EXPECT_EQ(paired({annotated(1, 1, "one", "/a/x.cpp", 10), annotated(1, 2, "two", "/a/x.cpp", 20)},
                   {annotated(2, 5, "deux", "/b/x.cpp", 120), annotated(2, 6, "un", "/b/x.cpp", 110)}, anchorsOf),
            "1:anchor 0:anchor");
}

}  // namespace
}  // namespace kelvar_compare
