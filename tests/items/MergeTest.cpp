#include <gtest/gtest.h>

#include "items/ItemText.h"
#include "items/SummaryItemImpl.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

std::string rowWithHandle(const SummaryItemImpl& item) {
  std::string text = support::row(item);
  if (item.annotation()) {
    const std::size_t place = text.find(' ', text.find(':'));
    text.insert(std::min(place, text.size()), " @" + std::to_string(item.handle()));
  }
  return text;
}

TEST(Merge, FollowsEachRule) {
  for (const auto& [rule, parts] : rules("merge.txt")) {
    ItemText text;
    const auto item = text.item(parts[0]);
    const auto other = text.item(parts.at(1));
    const std::string before = rowWithHandle(*other);
    item->merge(*other);
    EXPECT_EQ(rowWithHandle(*item) + '\n', parts.at(2)) << rule;
    EXPECT_EQ(rowWithHandle(*other), before) << rule;
  }
}

TEST(Merge, TooDeepSurvivesFromEitherSide) {
  const auto labelled = [](const char* label) {
    return support::itemFrom(support::annotation(label, "x.cpp:1"), 1, kCurrent);
  };
  for (const auto& [into, other] : {std::pair("s", "__too deep__"), std::pair("__too deep__", "s")}) {
    const auto item = labelled(into);
    item->merge(*labelled(other));
    EXPECT_EQ(item->label(), "__too deep__") << into;
  }
}

TEST(Copy, ReadsAnnotatedSitesAfreshAndKeepsRecords) {
  ItemText text;
  const auto hotSpot = text.item("- s x.cpp:1 k2 d1 survey selected");
  EXPECT_EQ(support::row(*SummaryItemImpl::copySummaryItem(*hotSpot)), support::row(*hotSpot));

  // Annotated by a merge, it is a hot spot under its old label and kind; a copy is what its annotation says.
  hotSpot->merge(*text.item("@7 t y.cpp:9 k4 s2"));
  const auto copy = SummaryItemImpl::copySummaryItem(*hotSpot);
  EXPECT_EQ(support::row(*hotSpot), "- s x.cpp:1 task, hot spot, selected | survey - 1.00");
  EXPECT_EQ(support::row(*copy), "- t y.cpp:9 taskloop, selected | survey - 1.00");
  EXPECT_EQ(copy->handle(), 7U);
  EXPECT_EQ(copy->summaryDetail(digestio::kSurvey), hotSpot->summaryDetail(digestio::kSurvey));
}

}  // namespace
