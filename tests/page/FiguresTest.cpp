#include <gtest/gtest.h>

#include <limits>

#include "Figures.h"
#include "PageJson.h"

namespace kelvar_page {
namespace {

template <class Value>
struct Case {
  Value value;
  const char* want;
};

TEST(Figures, HaveThreeDigitsAndAUnit) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  for (const auto& [value, want] : {Case<double>{0, "0 s"},
                                    {1.04, "1.04 s"},
                                    {0.2446, "245 ms"},
                                    {9.996, "10.0 s"},
                                    {0.9999, "1.00 s"},
                                    {138.15850999999995, "138 s"},
                                    {3000, "50.0 min"},
                                    {7200, "2.00 h"},
                                    {2.5e-9, "2.50 ns"},
                                    {kNaN, "-"}}) {
    EXPECT_EQ(timeText(value, TimeUnit()), want) << value;
  }
  const TimeUnit instructions("millions of instructions");
  for (const auto& [value, want] : {Case<double>{0, "0 instr"},
                                    {5.5948, "5.59 Minstr"},
                                    {0.9996, "1.00 Minstr"},
                                    {2.5e-5, "25 instr"},
                                    {123456, "123 Ginstr"},
                                    {kNaN, "-"}}) {
    EXPECT_EQ(timeText(value, instructions), want) << value;
  }
  EXPECT_EQ(timeText(3000, TimeUnit("millions of cache-misses:u")), "3.00 Gcache-misses:u");
  EXPECT_EQ(TimeUnit("seconds"), TimeUnit());
  for (const auto& [value, want] : {Case<double>{0, "0%"},
                                    {0.684, "68%"},
                                    {0.0851, "8.5%"},
                                    {0.0994, "9.9%"},
                                    {0.0996, "10%"},
                                    {0.0004, "<0.1%"}}) {
    EXPECT_EQ(shareText(value), want) << value;
  }
  for (const auto& [value, want] : {Case<std::int64_t>{0, "0"},
                                    {999, "999"},
                                    {1306, "1.31k"},
                                    {999999, "1.00M"},
                                    {4600000, "4.60M"},
                                    {-1500, "-1.50k"}}) {
    EXPECT_EQ(countText(value), want) << value;
  }
  EXPECT_EQ(gainText(2.054), "2.05x");
}

TEST(PageJson, StaysTextInsideAScript) {
  using namespace std::string_literals;
  PageJson json;
  json.beginObject().text("a", "</script><!--\"\\\n"s).text("b", "x\0y\xff\xe2\x80\xae"s).number("c", 0.5).endObject();
  EXPECT_EQ(json.json(), R"({"a":"\u003c/script\u003e\u003c!--\u0022\u005c\u000a","b":"x\ufffdy\ufffd)"
                         "\xe2\x80\xae\",\"c\":0.5}");
}

}  // namespace
}  // namespace kelvar_page
