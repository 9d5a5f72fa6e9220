#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "Diagnosis.h"
#include "Places.h"

namespace kelvar_readers {
namespace {

using Kind = sitenotes::annotation_t;
using kelvar_platform::Site;

Site site(Kind::kind_t kind, const char* label, const char* file, int line) {
  return {.kind = kind, .label = label, .file = file, .line = line};
}

/// outer 10-40, inner 20-30 with a critical section 25-25, all closed; open from 50 is not.
std::vector<Site> sites() {
  return {site(Kind::end_parallel, "outer", "src/a.cpp", 40), site(Kind::parallel, "outer", "src/a.cpp", 10),
          site(Kind::taskloop, "inner", "src/a.cpp", 20),     site(Kind::end_task, "inner", "src/a.cpp", 30),
          site(Kind::critical, "sum", "src/a.cpp", 25),       site(Kind::end_critical, "sum", "src/a.cpp", 25),
          site(Kind::parallel, "open", "src/a.cpp", 50),      site(Kind::end_parallel, "other", "src/a.cpp", 60)};
}

std::string labelsAt(Places& places, std::vector<Place> stack) {
  std::ostringstream labels;
  const Frame frame{.chain = std::move(stack)};
  for (const std::size_t region : places.regionsAt({&frame})) labels << places.regions()[region].label << ' ';
  return labels.str();
}

TEST(Places, AreEnclosedFromTheInnermostSiteOut) {
  Places places(sites(), {});
  const struct {
    const char* file;
    int line;
    const char* want;
  } kCases[] = {{"/build/a.cpp", 9, ""},  {"/build/a.cpp", 10, "outer "},    {"a.cpp", 25, "sum inner outer "},
                {"a.cpp", 41, ""},        {"./x/a.cpp", 30, "inner outer "}, {"a.cpp", 55, ""},
                {"a.cpp", 0, ""},         {"/usr/include/a.cpp", 25, ""},    {"b.cpp", 25, ""},
                {"a.cpp", 2147483647, ""}};
  for (const auto& [file, line, want] : kCases) {
    EXPECT_EQ(labelsAt(places, {{.function = "", .file = file, .line = line}}), want) << file << line;
  }
}

TEST(Places, OfAStackAreTheFirstThatLiesInASite) {
  Places places(sites(), {});
  const Place library{.function = "memcpy", .file = "/usr/lib/s.h", .line = 3};
  const Place bare{.function = "start", .file = ""};
  const Place within{.function = "work", .file = "a.cpp", .line = 12};
  const Place outside{.function = "main", .file = "m.cpp", .line = 5};
  EXPECT_EQ(labelsAt(places, {library, bare, within, outside}), "outer ");
  const auto own = [&places](const Frame& frame) {
    const Place* const place = places.ownPlace({&frame});
    return place ? place->function : "none";
  };
  EXPECT_EQ(own({.chain = {library, outside}}), "main");
  EXPECT_EQ(own({.chain = {library, bare}}), "memcpy");
  EXPECT_EQ(own({.chain = {{.file = "m.cpp"}}}), "none");
}

TEST(Places, AreInTheAnnotatedFileWithTheLongestCommonTail) {
  Places places({site(Kind::parallel, "a", "src/a/x.h", 1), site(Kind::end_parallel, "a", "src/a/x.h", 9),
                 site(Kind::parallel, "b", "src/b/./x.h", 1), site(Kind::end_parallel, "b", "src/b/./x.h", 9)},
                {});
  const std::pair<const char*, const char*> kCases[] = {{"/build/src/a/x.h", "a "},
                                                        {"/build/src/b/x.h", "b "},
                                                        {"/other/src/a/../b/x.h", "b "},
                                                        {"./b/x.h", "b "},
                                                        {"/build/src/c/x.h", ""}};
  for (const auto& [file, want] : kCases) EXPECT_EQ(labelsAt(places, {{.file = file, .line = 5}}), want) << file;
  try {
    (void)labelsAt(places, {{.file = "x.h", .line = 5}});
    ADD_FAILURE() << "either of two files may be meant";
  } catch (const kelvar_platform::ReadError& error) {
    EXPECT_STREQ(error.what(),
                 "x.h: expected one annotated file of this name: it may be src/a/x.h or src/b/./x.h; tell them apart "
                 "by --map-path");
  }
}

TEST(Places, OfAFrameAreAllSitesThatItIsInlinedInto) {
  Places places(sites(), {});
  const auto labels = [&places](const Frame& frame) {
    std::string all;
    for (const std::size_t region : places.regionsOf(frame)) all += places.regions()[region].label + ' ';
    return all;
  };
  Frames frames;
  Frame& frame = frames.add();
  frame.chain = {
      {.file = "/usr/include/h.h", .line = 25}, {.file = "a.cpp", .line = 22}, {.file = "a.cpp", .line = 12}};
  EXPECT_EQ(labels(frame), "inner outer ");
  EXPECT_EQ(labels(frame), "inner outer ");
  EXPECT_EQ(labels({.chain = {{.file = "a.cpp", .line = 12}}}), "outer ");
  EXPECT_EQ(labels({.chain = {{.file = "a.cpp", .line = 0}}}), "");
}

TEST(Places, FollowTheRulesForPaths) {
  Places places(sites(), {.prefixes = {{"/build/app", "/home/src"}, {"/build", "/other"}}, .sourceRoot = "/home"});
  EXPECT_EQ(places.pathOf("/build/app/x.c"), "/home/src/x.c");
  EXPECT_EQ(places.pathOf("/build/application/x.c"), "/other/application/x.c");
  EXPECT_EQ(places.pathOf("lib/../x.c"), "/home/x.c");
  Places relative({}, {.prefixes = {{"/build", ""}, {"/b/", "src/"}}, .sourceRoot = {}});
  EXPECT_EQ(relative.pathOf("/build/x/y.c"), "x/y.c");
  EXPECT_EQ(relative.pathOf("/buildings/y.c"), "/buildings/y.c");
  EXPECT_EQ(relative.pathOf("/b/./y.c"), "src/y.c");
  EXPECT_EQ(relative.pathOf("./s/../y.c"), "y.c");
  EXPECT_FALSE(places.isLibrary("x.c"));
  EXPECT_TRUE(places.isLibrary("/build/y.c"));
  EXPECT_FALSE(places.isLibrary(""));
  // Of a relative root, the files below it have full paths too.
  const std::string here = std::filesystem::current_path().native();
  Places below({}, {.prefixes = {}, .sourceRoot = "app/"});
  EXPECT_FALSE(below.isLibrary(here + "/app/x.c"));
  EXPECT_TRUE(below.isLibrary(here + "/application/x.c"));
  EXPECT_TRUE(below.isLibrary("/usr/include/x.h"));
  EXPECT_FALSE(Places({}, {.prefixes = {}, .sourceRoot = "."}).isLibrary("lib/x.c"));
}

}  // namespace
}  // namespace kelvar_readers
