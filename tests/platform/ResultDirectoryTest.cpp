#include "ResultFiles.h"
#include "support/Damages.h"

namespace kelvar_platform::test {
namespace {

using ResultDirectory = ResultFiles;

std::string describe(resdir::IResultDirectory& directory) {
  const auto text = [](const char* name) { return name != nullptr ? name : "none"; };
  std::ostringstream out;
  out << text(directory.hostName()) << ", " << text(directory.operatingSystem(0)) << ", "
      << directory.collectionStartTime() << '-' << directory.collectionEndTime() << ", "
      << directory.finalizationStartTime() << '-' << directory.finalizationEndTime() << ", " << directory.cpuCount()
      << " at " << directory.cpuFrequency();
  return out.str();
}

TEST_F(ResultDirectory, GivesWhatStandsThere) {
  const auto full = open(
      R"({"cpuFrequency":18446744073709551615,"commandLog":"/var/c.log","applicationLog":"./a//b","collectorLog":"",)"
      R"("hostName":"node\u0000x","operatingSystem":"Lin\u00fcx","collectionStartTime":1,"collectionEndTime":2,)"
      R"("finalizationStartTime":3,"finalizationEndTime":4,"cpuCount":2147483647,"more":{},"formatVersion":1})");
  ASSERT_TRUE(full) << refusal();
  EXPECT_EQ(describe(*full), "node, Lin\u00fcx, 1-2, 3-4, 2147483647 at 18446744073709551615");
  EXPECT_EQ(full->applicationLogPath(), folder_ + "/./a//b");
  EXPECT_EQ(full->collectorLogPath(), folder_ + "/");
  EXPECT_EQ(full->commandLogPath(), "/var/c.log");

  const auto bare = open(R"({"formatVersion":1})");
  ASSERT_TRUE(bare) << refusal();
  EXPECT_EQ(describe(*bare), "none, none, 0-0, 0-0, 0 at 0");
  EXPECT_EQ(bare->applicationLogPath(), folder_ + "/application.log");
  EXPECT_EQ(bare->collectorLogPath(), folder_ + "/collector.log");
  const auto again = resdir::ResultDirectoryManager::open((folder_ + "/./").c_str(), false, nullptr);
  EXPECT_EQ(again->commandLogPath(), folder_ + "/.//command.log");
}

TEST_F(ResultDirectory, IsRefusedWithThePlaceOfTheFirstBadValue) {
  for (const auto& [text, want] : support::damages("result.txt")) {
    EXPECT_FALSE(open(text)) << text;
    EXPECT_EQ(refusal(), "result.json: " + want) << text;
  }
  EXPECT_FALSE(resdir::ResultDirectoryManager::open((folder_ + "/none").c_str(), false, nullptr));
  EXPECT_EQ(refusal(), "none/result.json: expected a file that can be read (No such file or directory)");
}

}  // namespace
}  // namespace kelvar_platform::test
