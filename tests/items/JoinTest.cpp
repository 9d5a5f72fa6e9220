#include <gtest/gtest.h>

#include "items/ItemText.h"
#include "items/Join.h"
#include "support/Faults.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

struct JoinCase {
  const char* rule;
  const char* list;
  const char* incoming;
  const char* after;
  SummaryDataStatus want;
};

constexpr JoinCase kJoins[] = {
    {"sites of one handle on one line match exactly, whatever their files", "@7 s x.cpp:12\n", "@7 s y.cpp:12 survey\n",
     "+ s x.cpp:12 | survey = 1.00\n", kExactMatchCurrent},
    {"on another line approximately", "@7 s x.cpp:12\n@8 t x.cpp:20 k2\n", "@7 s x.cpp:13 survey\n@8 t x.cpp:20 s2\n",
     "+ s x.cpp:12 | survey ~ 1.00\n+ t x.cpp:20 task\n", kApproximateMatchCurrent},
    {"one site that meets none decides for the result", "@7 s x.cpp:12\n", "- u y.cpp:1 d1 survey\n@7 s x.cpp:13 s2\n",
     "+ s x.cpp:12\n- u y.cpp:1, hot spot | survey - 1.00\n", kNoMatchCurrent},
    {"a result without sites matches", "@7 s x.cpp:12\n", "", "+ s x.cpp:12\n", kExactMatchCurrent},
    {"of two items of one handle the later one takes", "@7 s x.cpp:1\n@7 s x.cpp:2 k2\n", "@7 s x.cpp:2 survey\n",
     "+ s x.cpp:1\n+ s x.cpp:2 task | survey = 1.00\n", kExactMatchCurrent},
    {"two incoming sites of an unknown handle stay two", "", "@7 s x.cpp:1 survey\n@7 s x.cpp:1 survey\n",
     "- s x.cpp:1 | survey - 1.00\n- s x.cpp:1 | survey - 2.00\n", kNoMatchCurrent},
    {"handle 0 meets nobody, and neighbours of one label and leaf are then one site", "@0 s p/x.cpp:1\n",
     "@0 s q/x.cpp:5 survey\n", "+ s p/x.cpp:1 | survey ~ 1.00\n", kNoMatchCurrent},
    {"so are two where one place is unknown", "- s _ map\n", "- s x.cpp:5 survey\n",
     "- s x.cpp:5 | survey - 1.00 | map - 1+0+0\n", kNoMatchCurrent},
    {"other labels and leaves stand apart", "- s x.cpp:1 map\n", "- t x.cpp:1 survey\n- s y.cpp:1 survey\n",
     "- s x.cpp:1 | map - 1+0+0\n- t x.cpp:1 | survey - 1.00\n- s y.cpp:1 | survey - 2.00\n", kNoMatchCurrent},
};

TEST(Join, FollowsEachRule) {
  for (const JoinCase& c : kJoins) {
    ItemText text;
    SummaryItems list = text.list(c.list);
    ItemText resultText;
    SummaryItems incoming = resultText.list(c.incoming);
    EXPECT_EQ(join(list, incoming), c.want) << c.rule;
    EXPECT_EQ(support::rows(list), c.after) << c.rule;
  }
}

struct Joining {
  ItemText text;
  SummaryItems list = text.list("@7 a-long-label-that-needs-memory x.cpp:12\n- s _ map\n");
  SummaryItems incoming = text.list("@7 a x.cpp:13 survey\n- s x.cpp:5 survey\n- t y.cpp:1 k2 d2 vec\n");
  std::string before = support::rows(list);
};

template <class Fault>
int faultsThatLeaveTheListAsItWas() {
  return support::atEveryFault<Fault>([] { return std::make_unique<Joining>(); },
                                      [](Joining& j) { join(j.list, j.incoming); },
                                      [](Joining& j) { EXPECT_EQ(support::rows(j.list), j.before); });
}

TEST(Join, LeavesTheListAsItWasWhereItFails) {
  EXPECT_GT(faultsThatLeaveTheListAsItWas<support::CallFault>(), 3);
  EXPECT_GT(faultsThatLeaveTheListAsItWas<support::AllocationFault>(), 5);
}

}  // namespace
