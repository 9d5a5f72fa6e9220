// Who becomes one site, and what is left of the two: the cases in rules/, lists of items as text.
#include <gtest/gtest.h>

#include "items/ItemText.h"
#include "items/joining/Join.h"
#include "support/Cases.h"
#include "support/Faults.h"
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
  for (const auto& [rule, parts] : support::cases("rules/merge.txt", 15)) {
    ItemText text;
    const auto item = text.item(parts[0]);
    const auto other = text.item(parts.at(1));
    const std::string before = rowWithHandle(*other);
    item->merge(other.get());
    EXPECT_EQ(rowWithHandle(*item) + '\n', parts.at(2)) << rule;
    EXPECT_EQ(rowWithHandle(*other), before) << rule;
  }
}

TEST(Copy, ReadsAnnotatedSitesAfreshAndKeepsRecords) {
  ItemText text;
  const auto hotSpot = text.item("- s x.cpp:1 k2 d1 survey selected");
  const auto copyOf = [](const auto& item) {
    return std::unique_ptr<SummaryItemImpl>(SummaryItemImpl::copySummaryItem(item.get()));
  };
  EXPECT_EQ(support::row(*copyOf(hotSpot)), support::row(*hotSpot));

  // Annotated by a merge, it is a hot spot under its old label and kind; a copy is what its annotation says.
  hotSpot->merge(text.item("@7 t y.cpp:9 k4 s2").get());
  const auto copy = copyOf(hotSpot);
  EXPECT_EQ(rowWithHandle(*hotSpot), "- s x.cpp:1 @7 task, hot spot, selected | survey - 1.00");
  EXPECT_EQ(rowWithHandle(*copy), "- t y.cpp:9 @7 taskloop, selected | survey - 1.00");
}

TEST(Fold, FollowsEachRule) {
  for (const auto& [rule, parts] : support::cases("rules/fold.txt", 12)) {
    ItemText text;
    SummaryItems items = text.list(parts[0]);
    items.exactMerge(static_cast<digestio::SummaryDataKind>(parts.size() > 2 ? std::stoi(parts[2]) : 0));
    EXPECT_EQ(support::rows(items), parts.at(1)) << rule;
  }
}

TEST(Fold, SurvivesListsThatAreEmptyOrHoldNothing) {
  SummaryItems items;
  items.exactMerge(digestio::kMap);
  EXPECT_EQ(items.size(), 0U);
  ItemText text;
  items = support::listOf(SummaryItems::value_type(), text.item("@1 a x.cpp:1"), SummaryItems::value_type());
  items.exactMerge(digestio::kMap);
  EXPECT_NE(support::rows(items).find("+ a x.cpp:1"), std::string::npos);
}

TEST(Join, FollowsEachRule) {
  for (const auto& [rule, parts] : support::cases("rules/join.txt", 9)) {
    ItemText text;
    SummaryItems list = text.list(parts[0]);
    ItemText resultText;
    const SummaryItems incoming = resultText.list(parts.at(1));
    const std::string before = support::rows(incoming);
    EXPECT_EQ(join(list, incoming), std::stoi(parts.at(3))) << rule;
    EXPECT_EQ(support::rows(incoming), before) << rule;
    EXPECT_EQ(support::rows(list), parts[2]) << rule;
  }
}

struct Joining {
  ItemText text;
  SummaryItems list = text.list(
      "@7 a-long-label-that-needs-memory x.cpp:12\n- s _ map\n- s x.cpp:9 survey\n"
      "@8 c a.cpp:3 s2\n@9 c a.cpp:4\n");
  SummaryItems incoming = text.list(
      "@7 a x.cpp:13 survey\n- s x.cpp:5 survey\n- t y.cpp:1 k2 d2 vec\n"
      "@8 c a.cpp:3 corr\n");
  std::string before = support::rows(list);
};

TEST(Join, LeavesTheListAsItWasWhereItFails) {
  const auto [calls, allocations] = support::atEveryFault<Joining>(
      [](Joining& j) { join(j.list, j.incoming); }, [](Joining& j) { EXPECT_EQ(support::rows(j.list), j.before); });
  EXPECT_GT(calls, 0);
  EXPECT_GT(allocations, 5);
}

}  // namespace
