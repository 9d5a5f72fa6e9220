#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <stdexcept>

#include "Annotations.h"
#include "ViewPages.h"
#include "support/Scratch.h"

namespace kelvar_page {
namespace {

constexpr const char* kToken = "0123456789abcdef0123456789abcdef";

/// A project of two sites, which a test may edit while its pages are served.
class Served : public testing::Test {
 protected:
  bool addSites() {
    editor.add(sitenotes::annotation_t::parallel, "</script><b>", "src/a.cpp", 3, 1);
    editor.add(sitenotes::annotation_t::task, "Other", "src/b.cpp", 4, 1);
    return true;
  }

  void measure(double time) const {
    scratch.write("survey/result.json", R"({"formatVersion":1})");
    scratch.write("survey/collection.json",
                  R"({"formatVersion":1,"dataKind":"survey","details":[{"label":"Other","file":"src/b.cpp","line":4,)"
                  R"("annotationKind":2,"survey":{"priority":1,"id":1,"cpuTime":)" +
                      std::to_string(time) + "}}]}");
  }

  [[nodiscard]] std::unique_ptr<Model> load() const {
    auto data = boost::make_shared<kelvar::SummaryData>(kelvar_platform::openAnnotationDatabase(database));
    data->addSummaryData(scratch.path("survey"), kelvar_platform::openAnnotationDatabase(database));
    return std::make_unique<Model>(data, EvidenceIndex(), scratch.path().string(), std::vector<std::string>());
  }

  [[nodiscard]] std::string get(const std::string& target) {
    const Answer answer =
        pages.answer({.method = "GET", .target = target, .host = "127.0.0.1:8080", .origin = "", .token = kToken});
    return std::to_string(answer.status) + " " + answer.body;
  }

  support::Scratch scratch;
  std::string database = scratch.path("annotations.db");
  kelvar_platform::AnnotationEditor editor{database, kelvar_platform::AnnotationEditor::Open::createIfMissing};
  bool added = addSites();  // before the pages read them
  std::uint64_t version = 1;
  std::string comparison;
  ViewPages pages{{.load = [this] { return load(); },
                   .version = [this] { return version; },
                   .project = "p",
                   .annotations = database,
                   .comparison = [this] { return comparison; }},
                  8080,
                  kToken};
};

TEST_F(Served, PicturesFollowTheProject) {
  EXPECT_EQ(get("/data/pictures"), R"(200 {"treeTwice":"","tree":[],"points":[]})");
  measure(1.5);
  version = 2;
  EXPECT_EQ(get("/data/version"), R"(200 {"version":"2"})");
  EXPECT_NE(get("/data/pictures").find(R"("text":"1.50 s")"), std::string::npos) << get("/data/pictures");
}

TEST_F(Served, OnlyThoseWhoMayAreAnswered) {
  struct Case {
    Request request;
    int want;
  };
  const std::string page = std::string("/?token=") + kToken;
  for (const auto& [request, want] : {
           Case{{"GET", page, "127.0.0.1:8080", "", ""}, 200},
           Case{{"GET", page, "localhost:8080", "http://localhost:8080", ""}, 200},
           Case{{"GET", "/data/version", "127.0.0.1:8080", "http://127.0.0.1:8080", kToken}, 200},
           Case{{"GET", "/", "127.0.0.1:8080", "", ""}, 403},
           Case{{"GET", "/", "127.0.0.1:8080", "", kToken}, 403},
           Case{{"GET", "/?token=0123456789abcdef0123456789abcdee", "127.0.0.1:8080", "", ""}, 403},
           Case{{"GET", "/data/version?token=" + std::string(kToken), "127.0.0.1:8080", "", ""}, 403},
           Case{{"GET", page, "evil.example:8080", "", ""}, 421},
           Case{{"GET", page, "127.0.0.1", "", ""}, 421},
           Case{{"GET", page, "", "", ""}, 421},
           Case{{"GET", "/data/version", "127.0.0.1:8080", "http://evil.example", kToken}, 403},
           Case{{"GET", "/data/version", "127.0.0.1:8080", "null", kToken}, 403},
           Case{{"POST", "/data/version", "127.0.0.1:8080", "", kToken}, 405},
           Case{{"GET", "/data/version?%zz=1", "127.0.0.1:8080", "", kToken}, 400},
           Case{{"GET", "/data/../etc/passwd", "127.0.0.1:8080", "", kToken}, 404},
           Case{{"GET", "/data/source?file=../../etc/passwd", "127.0.0.1:8080", "", kToken}, 404},
           Case{{"GET", "/data/rows?from=0&count=1001", "127.0.0.1:8080", "", kToken}, 400},
           Case{{"GET", "/data/rows?from=-1&count=1", "127.0.0.1:8080", "", kToken}, 400},
           Case{{"GET", "/data/rows?from=0&count=1&sort=99", "127.0.0.1:8080", "", kToken}, 400},
       }) {
    EXPECT_EQ(pages.answer(request).status, want)
        << request.method << " " << request.target << " of " << request.host << " by " << request.origin;
  }
}

TEST_F(Served, RowsAreThoseThatAreAskedFor) {
  struct Case {
    const char* query;
    const char* want;  // how many there are, and the first one
  };
  for (const auto& [query, want] :
       {Case{"sort=2", R"(200 {"total":2,"from":0,"rows":[["s1","\u003c/script\u003e\u003cb\u003e")"},
        {"sort=2&reverse=1", R"(200 {"total":2,"from":0,"rows":[["s2")"},
        {"kind=task", R"(200 {"total":1,"from":0,"rows":[["s2")"},
        {"kind=function", R"(200 {"total":0,"from":0,"rows":[])"},
        {"text=OTHER", R"(200 {"total":1,"from":0,"rows":[["s2")"},
        {"text=A.cpp", R"(200 {"total":1,"from":0,"rows":[["s1")"},
        {"analysis=0", R"(200 {"total":0,"from":0,"rows":[])"},
        {"match=exact", R"(200 {"total":0,"from":0,"rows":[])"},
        {"match=none&sort=0", R"(200 {"total":2,"from":0,"rows":[["s1")"}}) {
    const std::string got = get(std::string("/data/rows?from=0&count=10&") + query);
    EXPECT_TRUE(got.starts_with(want)) << query << ": " << got;
  }
  EXPECT_TRUE(get("/data/row?key=s2").starts_with(R"(200 ["s2","Other","task")")) << get("/data/row?key=s2");
  EXPECT_EQ(get("/data/row?key=s9"), "404 no such row\n");
  EXPECT_NE(get("/data/site?key=s1").find("edit 1: parallel"), std::string::npos);
}

TEST_F(Served, WhatChangesIsReadAnewAndAFailureLeavesWhatWasThere) {
  editor.remove(2);
  EXPECT_EQ(get("/data/version"), R"(200 {"version":"1"})");
  EXPECT_TRUE(get("/data/row?key=s2").starts_with("200"));
  version = 2;
  EXPECT_EQ(get("/data/version"), R"(200 {"version":"2"})");
  EXPECT_TRUE(get("/data/row?key=s2").starts_with("404"));
  std::filesystem::remove(database);
  version = 3;
  EXPECT_THROW(static_cast<void>(get("/data/version")), std::runtime_error);
  EXPECT_TRUE(get("/data/row?key=s1").starts_with("200"));
}

TEST(Target, IsTakenApart) {
  const Target target = targetIn("/a?x=%41+b&y&x=2%26&=z");
  EXPECT_EQ(target.path, "/a");
  EXPECT_EQ(target.values, (std::map<std::string, std::string>{{"", "z"}, {"x", "2&"}, {"y", ""}}));
  EXPECT_EQ(targetIn("/a?x=%4").path, "");
}

TEST_F(Served, AComparisonIsThereIfOneWasAskedForAndFollowsTheProject) {
  EXPECT_EQ(get("/data/comparison"), "200 null");
  comparison = "{}";
  EXPECT_EQ(get("/data/comparison"), "200 null");
  version = 2;
  static_cast<void>(get("/data/version"));
  EXPECT_EQ(get("/data/comparison"), "200 {}");
}

}  // namespace
}  // namespace kelvar_page
