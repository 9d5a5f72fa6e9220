#include <gtest/gtest.h>

#include <string_view>
#include <thread>
#include <vector>

#include "Diagnosis.h"
#include "sitenotes.h"

namespace kelvar_platform::test {
namespace {

using namespace std::string_view_literals;
using sitenotes::locator_t;

int sign(int order) {
  return (order > 0) - (order < 0);
}

int plainOrder(const locator_t& a, const locator_t& b) {
  const auto key = [](const locator_t& place) {
    const std::string& path = place.get_file().get_text();
    return std::tuple(path.substr(path.rfind('/') + 1), place.get_line(), place.get_column(), path);
  };
  return (key(a) > key(b)) - (key(a) < key(b));
}

TEST(Locator, DisplayOrderIsLeafLineColumnPathByteByByte) {
  std::vector<locator_t> places;
  for (const std::string_view path :
       {""sv, "a"sv, "x/a"sv, "y/a"sv, "a/"sv, "a\0"sv, "\0"sv, "/b/abcdefgh"sv, "/b/abcdefghi"sv, "/b/abcdefgha"sv,
        "/c/abcdefghi"sv, "\xFF"sv, "z/\xFF\x01"sv, "abcdefg\x80"sv, "abcdefg\x7F"sv}) {
    for (const int line : {-1, 0, 2}) places.insert(places.end(), {{path, line, 0}, {path, line, 1}});
  }
  for (const locator_t& a : places) {
    for (const locator_t& b : places) EXPECT_EQ(sign(a.display_order(b)), plainOrder(a, b)) << a.get_file().get_text();
  }
  EXPECT_TRUE(locator_t({}, 0, 0).is_null());
  EXPECT_FALSE(locator_t({}, 0, 1).is_null() || locator_t({}, 1, 0).is_null() || locator_t({"a"}, 0, 0).is_null());
}

TEST(Locator, ThreadsThatNameOneFileMeanOnePath) {
  std::vector<std::vector<toolbelt::path_t>> paths(4);
  std::vector<std::thread> threads;
  for (auto& mine : paths) {
    threads.emplace_back([&mine] {
      for (int i = 0; i < 2000; ++i) mine.emplace_back("/shared/" + std::to_string(i) + ".cpp");
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < paths[0].size(); ++i) {
    for (const auto& other : paths) EXPECT_EQ(&paths[0][i].get_leaf(), &other[i].get_leaf());
  }
}

TEST(Locator, AKindOutsideTheTableHasNoName) {
  using sitenotes::annotation_t;
  EXPECT_STREQ(annotation_t::display(annotation_t::end_task), "end task");
  EXPECT_STREQ(annotation_t::display(annotation_t::teams), "teams");
  for (const int kind : {-1, 19, 1 << 30}) EXPECT_STREQ(annotation_t::display(annotation_t::kind_t(kind)), "");
}

TEST(Locator, ARefusalMovesNoCursor) {
  const Refusal refusal{"a\x1B[2J\xC2\x9B\xFF.db", "caf\xC3\xA9", "x\ny"};
  EXPECT_EQ(refusal.sentence(), "a\\x1b[2J\\xc2\\x9b\\xff.db: caf\xC3\xA9: expected x\\x0ay");
  note(refusal);
  note({"b", "", "c"});
  note(refusal);
  EXPECT_EQ(takeRefusals(), (std::vector<Refusal>{refusal, {"b", "", "c"}}));
  EXPECT_TRUE(takeRefusals().empty());
}

}  // namespace
}  // namespace kelvar_platform::test
