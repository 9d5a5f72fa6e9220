/// What is promised about threads, on the real database: that nothing races is for the thread sanitizer to see.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "Annotations.h"
#include "kelvar/SummaryData.h"
#include "support/Rows.h"
#include "tools/Command.h"

namespace kelvar_test {
namespace {

TEST(Concurrency, TwoObjectsShareADatabaseInTwoThreads) {
  const Scratch scratch;
  const std::string file = scratch.path() / "annotations.db";
  kelvar_platform::AnnotationEditor editor(file, kelvar_platform::AnnotationEditor::Open::createIfMissing);
  for (int line = 1; line <= 40; ++line) {
    editor.add(static_cast<sitenotes::annotation_t::kind_t>(line % 19), "site " + std::to_string(line / 2),
               "/src/f.cpp", line, 0);
  }
  scratch.write("survey/result.json", R"({"formatVersion":1})");
  scratch.write("survey/collection.json",
                R"({"formatVersion":1,"dataKind":"survey","details":[{"file":"/src/f.cpp","line":7,"label":"hot",)"
                R"("detailKind":1,"survey":{"cpuTime":1.5,"priority":1,"id":1}}]})");
  const auto database = kelvar_platform::openAnnotationDatabase(file);
  kelvar_platform::installDatabase(database);

  const auto use = [&](std::string& seen) {
    kelvar_2_1_7::SummaryData data(database);
    data.addSummaryData(scratch.path() / "survey", {});
    for (int mapping = 0; mapping < 15; ++mapping) {
      data.setMapping(static_cast<kelvar_2_1_7::SummaryMapping>(mapping), mapping % 2 != 0);
      seen += support::rows(data) + data.asString(true);
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
  EXPECT_NE(seen[0].find("hot"), std::string::npos);
}

}  // namespace
}  // namespace kelvar_test
