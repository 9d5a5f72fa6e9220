#include <sys/stat.h>
#include <unistd.h>

#include "ResultFiles.h"
#include "support/Damages.h"

namespace kelvar_platform::test {
namespace {

using CollectionFile = ResultFiles;
using namespace std::string_literals;

/// A collection with these further keys.
std::string with(const std::string& keys) {
  return R"({"formatVersion":1,"dataKind":"map",)" + keys + '}';
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

/// A collection of one detail, with `value` in place of the value of `key`.
std::string detailWith(const std::string& key, const std::string& value) {
  std::ifstream whole(KELVAR_TEST_FOLDER "/damages/none.json");
  std::string text;
  for (std::string line; std::getline(whole, line);) text += line.substr(line.find_first_not_of(' '));
  const std::size_t found = text.rfind('"' + key + "\":");
  if (key.empty() || found == std::string::npos) return text;
  const std::size_t begin = found + key.size() + 3;
  const std::size_t end = text[begin] == '[' ? text.find(']', begin) + 1 : text.find_first_of(",}", begin);
  return text.replace(begin, end - begin, value);
}

/// A damaged collection: `whole DOCUMENT`, `keys KEYS` for one with these, `detail KEY VALUE` for a detail's.
std::string document(const std::string& damage) {
  const std::string rest = damage.substr(damage.find(' ') + 1);
  if (damage.starts_with("whole ")) return rest;
  if (damage.starts_with("keys ")) return with(rest);
  return detailWith(rest.substr(0, rest.find(' ')), rest.substr(rest.find(' ') + 1));
}

TEST_F(CollectionFile, GivesWhatStandsThere) {
  const auto full = load(detailWith("", ""));
  ASSERT_TRUE(full) << refusal();
  EXPECT_EQ(rows(*full),
            "2 18 'a' /s/a.cpp:2147483647:0 | survey 1.5 -2147483648 2147483647 | vectorization 1 0.001 -0.25 7 -1"
            " | suitability 3.25 8 4294967295 4.5 2 | dependencies 2 1 3"
            " | map -9223372036854775808 0 9223372036854775807\n");
  EXPECT_EQ(full->dataKind(), digestio::kMap);

  const auto bare = load(" { \"details\" : [ { } , {\"label\" : \"z\"\t} ]\r\n, " + with("\"x\":0").substr(1) + "\n ");
  ASSERT_TRUE(bare) << refusal();
  EXPECT_EQ(rows(*bare), "0 0 '' :0:0\n0 0 'z' :0:0\n");
  EXPECT_TRUE(bare->detail(0)->locator().is_null());
  EXPECT_EQ(bare->num_processors() + bare->num_kova_threads(), 0);
  EXPECT_EQ(bare->threading_paradigm() * 10 + bare->target_system(), 73);
  EXPECT_EQ(bare->programMaxGain(), 0.0);
}

TEST_F(CollectionFile, TakesWhatIsUnusualButFits) {
  struct Case {
    std::string text;
    std::string want;
  };
  const std::string ignored =
      R"("x":[null,true,false,-0.0e+5,1e999,123456789012345678901234567890,"\ud83d\ude00",{"a":{}}])";
  const Case cases[] = {
      {with(ignored + R"(,"details":[{"line":3,)" + ignored + "}]"), "0 0 '' :3:0\n"},
      {with(R"("details":[{"l\u0061bel":"a\u0000\u00e9\n\"\\\/\ud83d\ude00"}])"),
       "0 0 'a\0\u00e9\n\"\\/\U0001F600' :0:0\n"s},
      {with("\"details\":[{\"label\":\"\u00e9 \x7F\"}]"), "0 0 '\u00e9 \x7F' :0:0\n"},
      {with(R"("details":[{"line":-0,"survey":{"id":0,"priority":0,"cpuTime":-0}}])"), "0 0 '' :0:0 | survey -0 0 0\n"},
      {with(R"("details":[{"survey":{"cpuTime":18446744073709551616,"id":1,"priority":2}}])"),
       "0 0 '' :0:0 | survey 1.8446744073709552e+19 2 1\n"},
      {with(R"("details":[{"survey":{"cpuTime":1e-400,"id":1,"priority":2}}])"), "0 0 '' :0:0 | survey 0 2 1\n"},
      {with("\"details\":[],\"x\":" + nested(63)), ""},
      {with("\"processors\":-1"), ""},
  };
  for (const Case& each : cases) {
    const auto collection = load(each.text);
    ASSERT_TRUE(collection) << each.text << '\n' << refusal();
    EXPECT_EQ(rows(*collection), each.want) << each.text;
  }
}

TEST_F(CollectionFile, IsRefusedWithThePlaceOfTheFirstBadValue) {
  auto damages = support::damages("collection.txt");
  EXPECT_GE(damages.size(), 50U);
  for (auto& [text, want] : damages) text = document(text);
  // What a line of text cannot hold.
  damages.insert(damages.end(), {{"", "byte 0: expected the rest of the JSON"},
                                 {" \n", "byte 2: expected the rest of the JSON"},
                                 {"\xEF\xBB\xBF{}", "byte 0: expected JSON"},
                                 {"{\"x\":\"\xC3\x28\"}", "byte 6: expected UTF-8"},
                                 {"{\"x\":\"\xED\xA0\x80\"}", "byte 6: expected UTF-8"},
                                 {"{\"x\":\"a\nb\"}", "byte 7: expected a text without control characters"}});
  for (const auto& [text, want] : damages) {
    EXPECT_FALSE(load(text)) << text;
    EXPECT_EQ(refusal(), "collection.json: " + want) << text;
  }
}

TEST_F(CollectionFile, EveryPrefixIsRefused) {
  const std::string whole = detailWith("", "");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(load(whole.substr(0, size)));
    EXPECT_NE(refusal().find(": expected "), std::string::npos) << size;
  }
}

TEST_F(CollectionFile, NestingIsBoundedWhateverTheDepth) {
  std::string place = "x";
  for (int i = 0; i < 63; ++i) place += "[0]";
  for (const std::size_t depth : {std::size_t{64}, std::size_t{100'000}}) {
    EXPECT_FALSE(load(with("\"x\":" + nested(depth))));
    EXPECT_EQ(refusal(), "collection.json: " + place + ": expected a nesting of at most 64") << depth;
  }
  EXPECT_FALSE(load(std::string(100'000, '[')));
  EXPECT_EQ(refusal(), "collection.json: expected an object");
}

TEST_F(CollectionFile, ManyKeysInOneObjectAreToldApart) {
  std::string keys;
  for (int i = 300'000; i > 0; --i) keys += "\"" + std::to_string(i) + "\":0,";
  EXPECT_TRUE(load(with(keys + "\"z\":0"))) << refusal();
  EXPECT_FALSE(load(with(keys + "\"150000\":0")));
  EXPECT_EQ(refusal(), "collection.json: 150000: expected a key that stands once");
}

TEST_F(CollectionFile, ManyDetailsStayWhereTheyAre) {
  std::string details;
  for (int i = 0; i < 20'000; ++i) {
    details += R"({"label":"s)" + std::to_string(i) + R"(","file":"f)" + std::to_string(i % 3) +
               R"(","map":{"strides":[)" + std::to_string(i) + ",0,0]}},";
  }
  const auto collection = load(with("\"details\":[" + details + "{}]"));
  ASSERT_TRUE(collection) << refusal();
  ASSERT_EQ(collection->detailCount(), 20'001);
  for (int i = 0; i < 20'000; ++i) {
    const digestio::SummaryDetail& detail = *collection->detail(i);
    ASSERT_EQ(detail.label(), "s" + std::to_string(i));
    ASSERT_EQ(detail.locator().get_file().get_text(), "f" + std::to_string(i % 3));
    ASSERT_EQ(detail.mapView()->strides(0), i);
  }
}

TEST_F(CollectionFile, WhatIsNoFileIsRefusedWithoutWaiting) {
  const auto tryToLoad = [this](const std::string& name) {
    const std::string path = folder_ + name;
    EXPECT_EQ(digestio::SummaryCollection::load(path), nullptr);
    return refusal();
  };
  EXPECT_EQ(tryToLoad("/none"), "none/collection.json: expected a file that can be read (No such file or directory)");
  std::filesystem::create_directories(folder_ + "/folder/collection.json");
  EXPECT_EQ(tryToLoad("/folder"), "folder/collection.json: expected a regular file");
  std::filesystem::create_directories(folder_ + "/pipe");
  ASSERT_EQ(::mkfifo((folder_ + "/pipe/collection.json").c_str(), 0600), 0);
  EXPECT_EQ(tryToLoad("/pipe"), "pipe/collection.json: expected a regular file");
  write("collection.json", "");
  std::filesystem::resize_file(folder_ + "/collection.json", std::uintmax_t{1} << 32);  // a hole: takes no room
  EXPECT_EQ(tryToLoad(""), "collection.json: expected a file of at most 4294967295 bytes");
  std::filesystem::permissions(folder_ + "/collection.json", std::filesystem::perms::none);
  if (::geteuid() == 0) return;  // nothing is forbidden to root
  EXPECT_EQ(tryToLoad(""), "collection.json: expected a file that can be read (Permission denied)");
}

}  // namespace
}  // namespace kelvar_platform::test
