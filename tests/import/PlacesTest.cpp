#include <gtest/gtest.h>

#include <sstream>

#include "Places.h"

namespace kelvar_import {
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

std::string labelsAt(Places& places, const std::vector<Place>& stack) {
  std::ostringstream labels;
  for (const std::size_t region : places.regionsAt(stack)) labels << places.regions()[region].label << ' ';
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
  EXPECT_EQ(places.ownPlace({library, outside})->function, "main");
  EXPECT_EQ(places.ownPlace({library, bare})->function, "memcpy");
  EXPECT_EQ(places.ownPlace({Place{.function = "", .file = "m.cpp"}}), nullptr);
}

TEST(Places, FollowTheRulesForPaths) {
  Places places(sites(), {.prefixes = {{"/build/app", "/home/src"}, {"/build", "/other"}}, .sourceRoot = "/home"});
  EXPECT_EQ(places.pathOf("/build/app/x.c"), "/home/src/x.c");
  EXPECT_EQ(places.pathOf("/build/application/x.c"), "/other/application/x.c");
  EXPECT_EQ(places.pathOf("lib/../x.c"), "/home/x.c");
  EXPECT_FALSE(places.isLibrary("x.c"));
  EXPECT_TRUE(places.isLibrary("/build/y.c"));
  EXPECT_FALSE(places.isLibrary(""));
}

}  // namespace
}  // namespace kelvar_import
