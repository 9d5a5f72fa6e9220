// What no file holds and a collaborator may answer all the same: the table's columns stay where their readers cut them.
#include <gtest/gtest.h>

#include <cmath>

#include "support/Fakes.h"

using support::detail;
using support::FakeDetail;

namespace {

// The last line of a table of one item, without its newline.
std::string row(FakeDetail detail) {
  const std::string text = support::listOf(support::itemFrom(detail)).asString(false, true, true, true, true, true);
  const std::size_t begin = text.rfind('\n', text.size() - 2) + 1;
  return text.substr(begin, text.size() - 1 - begin);
}

std::string padded(std::string text, std::size_t width) {
  return text.append(width - std::min(width, text.size()), ' ');
}

TEST(ItemTable, KeepsItsColumnsWhateverADetailAnswers) {
  const double nan = std::nan("");
  const std::string parallel = "parallel      l                a.cpp:1";
  const auto site = [](const char* place) { return detail("l", place).map(); };
  const auto kinds = [&](int detailKind, int annotationKind) {
    FakeDetail odd = site("a.cpp:0").kind(static_cast<digestio::SummaryDetailKind>(detailKind));
    return odd.reports(static_cast<support::Kind>(annotationKind));
  };
  const std::string strides = padded("", 82) + "      0 /       0 /       0 ";
  const std::pair<FakeDetail, std::string> kCases[] = {
      {detail("l", "a.cpp:1"), padded("parallel", 60) + padded("", 98)},
      {detail("l", "a.cpp:1").survey({-nan, -5, 1234}), padded(parallel, 60) + "   -nan -5 1234 " + padded("", 85)},
      {detail("l", "a.cpp:1").vectorization({2, nan, 2.5, 77, 3}),
       padded(parallel, 73) + "2     nan    2.50     77 3 " + padded("", 65)},
      {site("a.cpp:-3"), padded("parallel      l                a.cpp:-3", 60) + strides},
      {site(":12"), padded("parallel      l", 60) + strides},
      {kinds(3, 0), padded("              l                a.cpp:0", 60) + strides},
      {kinds(0, 19), padded("              l                a.cpp:0", 60) + strides},
      {kinds(0, -1), padded("              l                a.cpp:0", 60) + strides},
  };
  for (const auto& [odd, want] : kCases) EXPECT_EQ(row(odd), want);
}

}  // namespace
