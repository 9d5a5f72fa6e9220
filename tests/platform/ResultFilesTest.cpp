#include <sys/stat.h>

#include <memory>
#include <regex>

#include "Files.h"
#include "digestio.h"
#include "resdir.h"
#include "support/Cases.h"

namespace kelvar_platform::test {
namespace {

/// A collection with these further keys.
std::string with(const std::string& keys) {
  return R"({"formatVersion":1,"dataKind":"map",)" + keys + '}';
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

/// A collection whose one detail has every key, without blanks.
std::string wholeDetail() {
  return std::regex_replace(support::contentOf(KELVAR_TEST_FOLDER "/damages/none.json"), std::regex("\n *"), "");
}

/// A damaged collection: `whole DOCUMENT`, `keys KEYS` for one with these, `detail KEY VALUE` for a detail's.
std::string document(const std::string& damage) {
  const std::string rest = damage.substr(damage.find(' ') + 1);
  if (damage.starts_with("whole ")) return rest;
  if (damage.starts_with("keys ")) return with(rest);
  const std::size_t blank = rest.find(' ');
  // The last one of this name, so that the rest of the detail is included.
  const std::regex last("(.*\"" + rest.substr(0, blank) + R"(":)(\[[^\]]*\]|[^,}]*))");
  return std::regex_replace(wholeDetail(), last, "$01" + rest.substr(blank + 1));
}

class ResultFiles : public Files {
 protected:
  [[nodiscard]] std::unique_ptr<digestio::SummaryCollection> load(const std::string& text) const {
    write("collection.json", text);
    return std::unique_ptr<digestio::SummaryCollection>(digestio::SummaryCollection::load(path()));
  }
};

TEST_F(ResultFiles, ACollectionIsRefusedWithThePlaceOfTheFirstBadValue) {
  std::vector<std::pair<std::string, std::string>> damages;
  for (const auto& [name, parts] : support::cases("damages/collection.txt", 50)) {
    damages.emplace_back(document(parts[0]), parts[1]);
  }
  // Cases that a line of text cannot hold.
  damages.insert(damages.end(), {{"", "byte 0: unexpected end of file"},
                                 {" \n", "byte 2: unexpected end of file"},
                                 {"\xEF\xBB\xBF{}", "byte 0: expected JSON"},
                                 {"{\"x\":\"\xC3\x28\"}", "byte 6: expected UTF-8"},
                                 {"{\"x\":\"\xED\xA0\x80\"}", "byte 6: expected UTF-8"},
                                 {"{\"x\":\"a\nb\"}", "byte 7: expected a text without control characters"},
                                 {std::string(100'000, '['), "expected an object"}});
  for (const auto& [text, want] : damages) {
    EXPECT_FALSE(load(text)) << text;
    EXPECT_EQ(refusal(), "collection.json: " + want) << text;
  }
}

TEST_F(ResultFiles, EveryPrefixOfACollectionIsRefused) {
  const std::string whole = wholeDetail();
  EXPECT_TRUE(load(whole));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(load(whole.substr(0, size)));
    EXPECT_TRUE(refusal().starts_with("collection.json: ")) << size;
  }
}

TEST_F(ResultFiles, NestingIsBoundedWhateverTheDepth) {
  std::string place = "x";
  for (int i = 0; i < 63; ++i) place += "[0]";
  EXPECT_TRUE(load(with("\"x\":" + nested(63))));
  for (const std::size_t depth : {std::size_t{64}, std::size_t{100'000}}) {
    EXPECT_FALSE(load(with("\"x\":" + nested(depth))));
    EXPECT_EQ(refusal(), "collection.json: " + place + ": expected a nesting of at most 64") << depth;
  }
  const std::string lists(1'000'000, '[');
  EXPECT_FALSE(load("{\"x\":" + lists + "]"));
  EXPECT_EQ(refusal(), "collection.json: byte 1000006: unexpected end of file");
}

TEST_F(ResultFiles, ManyKeysInOneObjectAreToldApart) {
  std::string keys;
  for (int i = 300'000; i > 0; --i) keys += "\"" + std::to_string(i) + "\":0,";
  EXPECT_TRUE(load(with(keys + "\"z\":0"))) << refusal();
  EXPECT_FALSE(load(with(keys + "\"150000\":0")));
  EXPECT_EQ(refusal(), "collection.json: 150000: duplicate key");
}

TEST_F(ResultFiles, ManyDetailsStayWhereTheyAreAndAreAskedForAsTheyStandInTheFile) {
  std::string details;
  for (int i = 0; i < 20'000; ++i) {
    const std::string number = std::to_string(i);
    details += R"({"label":"s)" + number + R"(","file":"f)" + std::to_string(i % 7) + R"(","line":)" +
               std::to_string(i * 7919 % 100) + R"(,"map":{"strides":[)" + number + ",0,0]}},";
  }
  const auto collection = load(with("\"details\":[" + details + "{}]"));
  ASSERT_TRUE(collection) << refusal();
  ASSERT_EQ(collection->detailCount(), 20'001);
  for (int i = 0; i < 20'000; ++i) {
    ASSERT_EQ(collection->detail(i)->label(), "s" + std::to_string(i));
    ASSERT_EQ(collection->detail(i)->locator().get_line(), i * 7919 % 100);
    ASSERT_EQ(collection->detail(i)->mapView()->strides(0), i);
  }
}

TEST_F(ResultFiles, WhatIsNoFileIsRefusedWithoutWaiting) {
  const auto tryToLoad = [this](const std::string& name) {
    EXPECT_EQ(digestio::SummaryCollection::load(path(name)), nullptr);
    return refusal();
  };
  EXPECT_EQ(tryToLoad("none"), "none/collection.json: expected a file that can be read (No such file or directory)");
  std::filesystem::create_directories(path("folder/collection.json"));
  EXPECT_EQ(tryToLoad("folder"), "folder/collection.json: expected a regular file");
  std::filesystem::create_directory(path("pipe"));
  ASSERT_EQ(::mkfifo(path("pipe/collection.json").c_str(), 0600), 0);
  EXPECT_EQ(tryToLoad("pipe"), "pipe/collection.json: expected a regular file");
  // A hole in the file takes no space.
  std::filesystem::resize_file(write("large/collection.json", ""), std::uintmax_t{1} << 32);
  EXPECT_EQ(tryToLoad("large"), "large/collection.json: expected a file of at most 4294967295 bytes");
}

TEST_F(ResultFiles, ARunIsRefusedWithThePlaceOfTheFirstBadValue) {
  for (const auto& [damage, parts] : support::cases("damages/result.txt", 50)) {
    write("result.json", parts[0]);
    EXPECT_FALSE(resdir::ResultDirectoryManager::open(path().c_str(), false, nullptr)) << damage;
    EXPECT_EQ(refusal(), "result.json: " + parts[1]) << damage;
  }
}

}  // namespace
}  // namespace kelvar_platform::test
