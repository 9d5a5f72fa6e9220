/// The guarantees about threads, on the real database. The thread sanitizer checks for races.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "Annotations.h"
#include "kelvar/SummaryData.h"
#include "support/Command.h"
#include "support/Rows.h"

namespace support {
namespace {

TEST(Concurrency, TwoObjectsShareADatabaseInTwoThreads) {
  const Scratch scratch;
  std::filesystem::copy(KELVAR_TEST_FOLDER "/inputs", scratch.path(), std::filesystem::copy_options::recursive);
  ASSERT_EQ(shellIn(scratch.path(), "sh project/annotate.sh \"$1\"").err, "");
  const auto database = kelvar_platform::openAnnotationDatabase(scratch.path("project/annotations.db"));
  kelvar_platform::installDatabase(database);

  // A state is made for the first result, and shared.
  const auto use = [&](std::string& seen) {
    kelvar_2_1_7::SummaryData data(database);
    for (const char* result : {"absurd/survey", "project/survey"}) data.addSummaryData(scratch.path(result), {});
    for (int mapping = 0; mapping < kelvar_2_1_7::kSummaryMappingCount; ++mapping) {
      data.setMapping(static_cast<kelvar_2_1_7::SummaryMapping>(mapping), mapping % 2 != 0);
      seen += rows(data) + data.asString(true);
      sitenotes::locator_t place = data.item(0)->locator();
      unsigned long handle = 0;
      seen += data.item(0)->getCurrentLocator(place, handle) ? std::to_string(handle) : "nowhere";
    }
  };
  std::array<std::string, 2> seen;
  std::thread other(use, std::ref(seen[0]));
  use(seen[1]);
  other.join();
  kelvar_platform::removeScanner();
  EXPECT_EQ(seen[0], seen[1]);
  EXPECT_NE(seen[0].find("solver"), std::string::npos);
}

}  // namespace
}  // namespace support
