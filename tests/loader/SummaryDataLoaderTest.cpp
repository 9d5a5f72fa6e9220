#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "kelvar/SummaryDataLoader.h"
#include "support/Fakes.h"
#include "support/Faults.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

using Loader = SummaryDataLoader;

struct Context final : Loader::IFinalizeTaskContext {
  boost::shared_ptr<Loader::IDataFromCollector> dataFromCollector() override { return collector; }
  boost::shared_ptr<Loader::IDataFromCollector> collector;
};

TEST(Loader, AddsFiveResultsInOrderAndKeepsWhatItBuilt) {
  support::Suite suite;
  const auto database = boost::make_shared<support::FakeDatabase>();
  database->site(7, support::annotation("s", "x.cpp:12"));
  suite.result("map", {.kind = digestio::kMap});

  const auto loader = Loader::Create();
  Context context;
  loader->DoTask(&context);
  EXPECT_EQ(loader->summaryData(), nullptr) << "nothing to load";

  context.collector = boost::make_shared<Loader::DataFromResult>("survey", "survey/surveyvectorization", "gain",
                                                                 "races", "map", database, nullptr, nullptr);
  const support::CallLog log;
  loader->DoTask(&context);
  EXPECT_EQ(log.text("open"), "open survey\nopen survey\nopen gain\nopen races\nopen map\n");
  const auto first = loader->summaryData();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->summaryDataStatus(digestio::kMap), kExactMatchCurrent);

  context.collector = boost::make_shared<Loader::DataFromResult>("gain", "races", "map", database, nullptr, nullptr);
  EXPECT_EQ(context.collector->surveyResultPath() + context.collector->surveyVectorizationResultPath(), "");
  EXPECT_EQ(context.collector->suitabilityResultPath() + context.collector->correctnessResultPath() +
                context.collector->mapResultPath(),
            "gainracesmap");
  loader->DoTask(&context);
  EXPECT_NE(loader->summaryData(), first) << "built afresh";
  EXPECT_EQ(support::rows(*first), "+ s x.cpp:12\n") << "holders of the old object keep it";
  EXPECT_EQ(loader->summaryData()->summaryDataStatus(digestio::kSurvey), kNotPresent);
}

TEST(Loader, HoldsWhatWasAddedBeforeAFailure) {
  support::Suite suite;
  const auto database = boost::make_shared<support::FakeDatabase>();
  suite.result("gain", {.kind = digestio::kSuitability});
  suite.result("map", {.kind = digestio::kMap, .details = {support::detail("s", "x.cpp:1").map()}});
  Context context;
  context.collector = boost::make_shared<Loader::DataFromResult>("gain", "", "map", database, nullptr, nullptr);
  struct Held {
    boost::shared_ptr<Loader> loader = Loader::Create();
  };
  int partly = 0;
  const auto check = [&](Held& held) {
    const auto data = held.loader->summaryData();
    if (!data) return;
    partly += data->aggregateResult()->resultCount() == 1;
    EXPECT_EQ(data->summaryDataStatus(digestio::kMap), kNotPresent);
    EXPECT_EQ(data->num_items(), 0);
  };
  support::atEveryFault<Held>([&](Held& held) { held.loader->DoTask(&context); }, check);
  EXPECT_GT(partly, 10);
}

}  // namespace
