#include "ResultFiles.h"

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
  const std::string uint64 = "an integer from 0 to 18446744073709551615";
  struct Damage {
    std::string text;
    std::string want;
  };
  const Damage damages[] = {
      {"{}", "formatVersion: expected a value"},
      {R"({"formatVersion":0})", "formatVersion: expected an integer from 1 to 1"},
      {R"({"hostName":null})", "hostName: expected a text"},
      {R"({"operatingSystem":["Linux"]})", "operatingSystem: expected a text"},
      {R"({"hostName":"\udfff"})", "hostName: expected a text whose escapes are characters"},
      {R"({"collectionStartTime":-1})", "collectionStartTime: expected " + uint64},
      {R"({"collectionEndTime":18446744073709551616})", "collectionEndTime: expected " + uint64},
      {R"({"finalizationStartTime":1.5})", "finalizationStartTime: expected " + uint64},
      {R"({"finalizationEndTime":"1"})", "finalizationEndTime: expected " + uint64},
      {R"({"cpuFrequency":2e9})", "cpuFrequency: expected " + uint64},
      {R"({"cpuCount":-1})", "cpuCount: expected an integer from 0 to 2147483647"},
      {R"({"cpuCount":2147483648})", "cpuCount: expected an integer from 0 to 2147483647"},
      {R"({"applicationLog":false})", "applicationLog: expected a text"},
      {R"({"collectorLog":{}})", "collectorLog: expected a text"},
      {R"({"commandLog":1})", "commandLog: expected a text"},
      {R"({"hostName":"a","hostName":"a"})", "hostName: expected a key that stands once"},
      {R"({"formatVersion":1}])", "byte 19: expected the end of the file"},
  };
  for (const Damage& damage : damages) {
    EXPECT_FALSE(open(damage.text)) << damage.text;
    EXPECT_EQ(refusal(), "result.json: " + damage.want) << damage.text;
  }
  EXPECT_FALSE(resdir::ResultDirectoryManager::open((folder_ + "/none").c_str(), false, nullptr));
  EXPECT_EQ(refusal(), "none/result.json: expected a file that can be read (No such file or directory)");
}

}  // namespace
}  // namespace kelvar_platform::test
