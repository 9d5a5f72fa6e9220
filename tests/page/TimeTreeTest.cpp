#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TimeTree.h"

namespace kelvar_page {
namespace {

TimedPlace region(const std::string& label, double time, int first, int last) {
  return {.key = label, .label = label, .time = time, .first = first, .last = last};
}

TimedPlace function(const std::string& label, double time, int line) {
  return {.key = label, .label = label, .time = time, .first = line, .function = true};
}

std::string text(const std::vector<TimeNode>& nodes) {
  std::string all;
  for (const TimeNode& node : nodes) {
    all += (all.empty() ? "" : " ") + node.label + " " + std::to_string(static_cast<int>(node.time));
    if (!node.within.empty()) {
      all += " (own " + std::to_string(static_cast<int>(node.own)) + ": " + text(node.within) + ")";
    }
  }
  return all;
}

TEST(TimeTree, WhatLiesWithinIsCountedOnce) {
  struct Case {
    const char* what;
    std::vector<TimedPlace> places;
    const char* want;
  };
  for (const auto& [what, places, want] : {
           Case{"regions within each other, to any depth",
                {region("inner", 3, 12, 18), region("outer", 10, 10, 20), region("innermost", 1, 14, 15)},
                "outer 10 (own 7: inner 3 (own 2: innermost 1))"},
           Case{"side by side, longest first", {region("a", 1, 1, 2), region("b", 2, 3, 4)}, "b 2 a 1"},
           Case{"a function that holds regions",
                {function("f", 9, 5), region("a", 4, 6, 7), region("b", 2, 8, 9), function("g", 1, 20)},
                "f 9 (own 3: a 4 b 2) g 1"},
           Case{"a region that calls others takes longer than the function around it",
                {function("f", 1, 5), region("a", 4, 6, 7)},
                "f 4 (own 0: a 4)"},
           Case{"a function that begins in a region ends with it",
                {region("a", 9, 1, 10), function("body", 5, 3), region("b", 2, 12, 13)},
                "a 9 (own 4: body 5) b 2"},
           Case{
               "a function at the line of its region", {region("a", 4, 5, 9), function("f", 3, 5)}, "f 4 (own 0: a 4)"},
           Case{"a region that is never closed holds nothing", {region("a", 4, 5, 0), region("b", 3, 6, 7)}, "a 4 b 3"},
           Case{"a region without a time whose inner one has some",
                {region("a", 0, 5, 9), region("b", 3, 6, 7)},
                "a 3 (own 0: b 3)"},
           Case{"nothing without a time", {region("a", 0, 5, 9), function("f", 0, 1)}, ""},
       }) {
    EXPECT_EQ(text(nestedPlaces(places)), want) << what;
  }
}

TEST(TimeTree, RegionsAreShownToADepthThatCanBeWalked) {
  std::vector<TimedPlace> places;
  for (int depth = 0; depth < 100000; ++depth) places.push_back(region("r", 7, depth, 200000 - depth));
  const std::vector<TimeNode> nodes = nestedPlaces(places);
  int depth = 0;
  for (const std::vector<TimeNode>* level = &nodes; !level->empty(); level = &level->front().within) ++depth;
  EXPECT_EQ(depth, 16);
  EXPECT_EQ(nodes.front().time, 7);
}

}  // namespace
}  // namespace kelvar_page
