#include <gtest/gtest.h>

#include "items/ItemText.h"
#include "items/Join.h"
#include "support/Faults.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

TEST(Join, FollowsEachRule) {
  for (const auto& [rule, parts] : rules("join.txt")) {
    ItemText text;
    SummaryItems list = text.list(parts[0]);
    ItemText resultText;
    SummaryItems incoming = resultText.list(parts.at(1));
    EXPECT_EQ(join(list, incoming), std::stoi(parts.at(3))) << rule;
    EXPECT_EQ(support::rows(list), parts[2]) << rule;
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
