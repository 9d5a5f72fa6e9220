#include <gtest/gtest.h>

#include <algorithm>
#include <boost/make_shared.hpp>

#include "results/AggregateSummaryResultImpl.h"
#include "results/SummaryResultImpl.h"
#include "support/Fakes.h"
#include "support/Faults.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;
using support::annotation;
using support::detail;

namespace {

TEST(Result, OpensTheDirectoryThatHoldsIt) {
  constexpr std::pair<const char*, const char*> kPaths[] = {
      {"r/survey", "r/survey"},
      {"r/surveyvectorization", "r"},
      {"r/survey/surveyvectorization", "r/survey"},
      {"r/surveyvectorization2", "r/surveyvectorization2"},
      {"surveyvectorizationX/surveyvectorization", "surveyvectorizationX/surveyvectorization"},
      {"surveyvectorization", "surveyvectorization"},
      {"eighteen-bytes-pat", "eighteen-bytes-pat"},  // one byte short of the name of the sub-result
  };
  for (const auto& [path, directory] : kPaths) {
    support::Suite suite;
    suite.opens(directory, {});
    suite.loads(path, {});
    const support::CallLog log;
    EXPECT_TRUE(SummaryResultImpl(nullptr, path, nullptr).loaded()) << path;
    EXPECT_NE(log.text().find(std::string("open ") + directory), std::string::npos) << log.text();
  }
}

TEST(Result, StopsWhereThereIsNothingToRead) {
  support::Suite suite;
  suite.opens("no collection", {.hostName = "node"});
  suite.loads("no directory", {});
  for (const char* path : {"", "no directory", "no collection"}) {
    const support::CallLog log;
    SummaryResultImpl result(nullptr, path, nullptr);
    EXPECT_FALSE(result.loaded()) << path;
    EXPECT_EQ(result.hostName(), "") << path;
    EXPECT_TRUE(result.items().empty()) << path;
    EXPECT_EQ(log.text("open").empty(), *path == '\0') << path;
    EXPECT_EQ(log.text("load").empty(), path != std::string("no collection")) << path;
  }
}

std::string kindsOf(const SummaryResultImpl& result) {
  std::string text;
  for (const auto kind : kAllKinds) text += result.carries(kind) ? std::to_string(kind) : "";
  return text;
}

TEST(Result, CarriesItsOwnKindAndWhatItsDetailsShow) {
  support::Suite suite;
  suite.result("own", {.kind = digestio::kSuitability});
  suite.result("more",
               {.kind = digestio::kSurvey, .details = {detail("s", "x.cpp:1").survey().map(), detail().missing()}});
  suite.result("odd", {.kind = static_cast<digestio::SummaryDataKind>(9)});
  const SummaryResultImpl own(nullptr, "own", nullptr);
  EXPECT_EQ(kindsOf(own), "2");
  EXPECT_TRUE(own.summaryCollection() && own.resultCount() == 0 && own.result(0) == nullptr);
  EXPECT_EQ(kindsOf(SummaryResultImpl(nullptr, "more", nullptr)), "04");
  EXPECT_EQ(kindsOf(SummaryResultImpl(nullptr, "odd", nullptr)), "");
}

TEST(Result, ListsLivingAnnotationsBesideItsDetailsAndFoldsThem) {
  support::Suite suite;
  suite.result("r", {.details = {detail("s", "x.cpp:2").survey({.cpuTime = 2.5})}});
  const auto database = boost::make_shared<support::FakeDatabase>();
  database->site(1, annotation("s", "x.cpp:3"))
      .site(2, annotation("dead", "y.cpp:1"), false)
      .site(3, annotation("off", "y.cpp:2", sitenotes::annotation_t::parallel, true))
      .site(4, nullptr)
      .site(5, annotation("t", "z.cpp:1", sitenotes::annotation_t::task));
  const std::string seen = "- s x.cpp:2 | survey - 2.50\n- t z.cpp:1 task | survey - | vectorization -\n";
  EXPECT_EQ(support::rows(SummaryResultImpl(nullptr, "r", database).items()), seen);
  // Every result walks the database for itself.
  database->site(5, annotation("t", "z.cpp:1"), false).site(6, annotation("u", "z.cpp:4"));
  EXPECT_EQ(support::rows(SummaryResultImpl(nullptr, "r", database).items()),
            "- s x.cpp:2 | survey - 2.50\n- u z.cpp:4 | survey - | vectorization -\n");
}

TEST(Result, AsksADetailWithoutAViewForNothingElse) {
  support::Suite suite;
  suite.result("r", {.details = {detail("s", "x.cpp:2"), detail("t", "y.cpp:2").map()}});
  const support::CallLog log;
  const SummaryResultImpl result(nullptr, "r", nullptr);
  EXPECT_EQ(log.text("detail locator"), "detail locator\n") << log.text();
  EXPECT_EQ(log.text("detail label"), "detail label\n");
}

TEST(Result, DetailsThatAreAlikeStandAsListed) {
  support::Suite suite;
  const auto alike = detail("s", "x.cpp:2").survey();
  suite.result("r", {.details = {detail("t", "x.cpp:9").survey(), alike, alike, alike}});
  const support::CallLog log;
  SummaryResultImpl result(nullptr, "r", nullptr);
  const std::string counted = log.text("collection detailCount");
  EXPECT_EQ(std::count(counted.begin(), counted.end(), '\n'), 5) << "asked before each step";
  ASSERT_EQ(result.items().size(), 4U);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(result.items()[static_cast<std::size_t>(i)]->summaryDetail(digestio::kSurvey),
              result.summaryCollection()->detail(i + 1));
  }
}

/// Aggregates over results that differ in what a case is about.
template <class T>
struct Agreement {
  std::vector<T> stated;
  T want;
};

template <class T, class Build>
void expectAgreement(std::initializer_list<Agreement<T>> cases, T (SummaryResult::*value)() const, Build build) {
  for (const Agreement<T>& c : cases) {
    support::Suite suite;
    std::vector<std::unique_ptr<SummaryResultImpl>> results;
    AggregateSummaryResultImpl aggregate;
    for (const T& stated : c.stated) {
      build(suite, stated);
      results.push_back(std::make_unique<SummaryResultImpl>(nullptr, "r", nullptr));
      aggregate.append(results.back().get());
    }
    EXPECT_EQ((aggregate.*value)(), c.want) << testing::PrintToString(c.stated);
    EXPECT_EQ(aggregate.resultCount(), static_cast<int>(c.stated.size()));
    EXPECT_TRUE(results.empty() || aggregate.result(0) == results[0].get());
  }
}

TEST(Aggregate, AnswersWhatResultsAgreeOn) {
  expectAgreement<int>({{{}, 0}, {{8, 0, 8}, 8}, {{8, 0, 16}, 0}, {{0, 0}, 0}, {{8, 16, 8}, 0}},
                       &SummaryResult::cpuCount,
                       [](auto& suite, int count) { suite.result("r", {}, {.cpuCount = count}); });
  static std::string host;
  expectAgreement<std::string>({{{}, ""}, {{"a", "", "a"}, "a"}, {{"a", "b"}, ""}, {{"a", "A"}, ""}},
                               &SummaryResult::hostName, [](auto& suite, const std::string& name) {
                                 host = name;
                                 suite.result("r", {}, {.hostName = host.c_str()});
                               });
  expectAgreement<int>({{{}, 7}, {{7, 2, 7}, 2}, {{2, 3}, 7}, {{0, 7}, 0}, {{0, 2}, 7}},
                       &SummaryResult::threading_paradigm,
                       [](auto& suite, int paradigm) { suite.result("r", {.paradigm = paradigm}); });
}

TEST(Aggregate, AnswersTheFirstTargetAndTheMeanGain) {
  expectAgreement<int>({{{}, 0}, {{3, 1, 2}, 1}, {{3, 3}, 0}, {{0, 1}, 0}}, &SummaryResult::target_system,
                       [](auto& suite, int target) { suite.result("r", {.target = target}); });
  expectAgreement<double>({{{}, 0.0}, {{2.0, 0.0, 8.0}, 4.0}, {{5.0}, 5.0}, {{0.0, 0.0}, 0.0}},
                          &SummaryResult::programMaxGain,
                          [](auto& suite, double gain) { suite.result("r", {.gain = gain}); });
}

}  // namespace
