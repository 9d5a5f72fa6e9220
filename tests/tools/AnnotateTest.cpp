#include <gtest/gtest.h>

#include <sstream>

#include "tools/Command.h"

namespace kelvar_test {

namespace {

class Annotate : public testing::Test {
 protected:
  // What the command prints, or its complaint; words are separated by `|`.
  std::string annotate(const std::string& words) const {
    std::vector<std::string> arguments{"annotate", "notes.db"};
    std::istringstream in(words);
    for (std::string word; std::getline(in, word, '|');) arguments.push_back(word);
    const Outcome outcome = kelvarIn(scratch_.path(), arguments);
    return outcome.status == 0 ? outcome.out : std::to_string(outcome.status) + " " + outcome.err;
  }

  Scratch scratch_;
};

TEST_F(Annotate, EditsAreListed) {
  EXPECT_EQ(annotate("add|--kind|end-task|--label|solver|--at|/src/solver.cpp:120:5"), "1\n");
  EXPECT_EQ(annotate("add|--kind|3|--label|-O3|--at|a:b:7"), "2\n");
  EXPECT_EQ(annotate("add|--kind|end task|--label=|--at=12:34:56"), "3\n");
  EXPECT_EQ(annotate("add|--kind|teams|--label|a\tb\n\\\xc2\x9b\xc3\xa9|--at|./x//y/:2147483647"), "4\n");
  EXPECT_EQ(annotate("move|1|--at|/src/solver.cpp:124"), "");
  EXPECT_EQ(annotate("relabel|2|--|--all"), "");
  EXPECT_EQ(annotate("disable|2"), "");
  EXPECT_EQ(annotate("disable|3"), "");
  EXPECT_EQ(annotate("enable|3"), "");
  EXPECT_EQ(annotate("remove|1"), "");
  const std::string living =
      "2\tend-task\t--all\ta:b:7\tdisabled\n"
      "3\tend-task\t\t12:34:56\n"
      "4\tteams\ta\\tb\\n\\\\\\xc2\\x9b\xc3\xa9\t./x//y/:2147483647\n";
  EXPECT_EQ(annotate("list"), living);
  EXPECT_EQ(annotate("list|--all"), "1\tend-task\tsolver\t/src/solver.cpp:124\tremoved\n" + living);
}

TEST_F(Annotate, WhatIsNotThereIsNotEdited) {
  EXPECT_EQ(annotate("add|--kind|0|--label|a|--at|f:1"), "1\n");
  EXPECT_EQ(annotate("add|--kind|0|--label|\xff|--at|f:1").substr(0, 2), "1 ");
  for (const char* const words : {"move|2|--at|f:2", "relabel|2|b", "disable|2", "enable|2", "remove|2"}) {
    EXPECT_EQ(annotate(words).substr(0, 20), "1 kelvar: notes.db: ") << words;
  }
  EXPECT_EQ(annotate("list"), "1\tparallel\ta\tf:1\n");
}

}  // namespace

}  // namespace kelvar_test
