#include <gtest/gtest.h>

#include "items/ItemText.h"
#include "items/SummaryItemImpl.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

struct MergeCase {
  const char* rule;
  const char* into;
  const char* other;
  const char* want;
};

constexpr MergeCase kMerges[] = {
    {"a current annotation on the same line makes an exact match", "@7 s x.cpp:12", "- s y.cpp:12 survey",
     "+ s x.cpp:12 @7 | survey = 2.00"},
    {"on another line an approximate one", "@7 s x.cpp:12", "- s x.cpp:13 survey", "+ s x.cpp:12 @7 | survey ~ 2.00"},
    {"without a place an approximate one", "@7 s _", "- s x.cpp:12 survey", "+ s x.cpp:12 @7 | survey ~ 2.00"},
    {"it does so from either side", "- s x.cpp:12 survey", "@7 s x.cpp:12", "+ s x.cpp:12 @7 | survey = 1.00"},
    {"two sites that are not current stay unmatched", "@7 s x.cpp:12 s2", "- s x.cpp:12 survey",
     "- s x.cpp:12 @7 | survey - 2.00"},
    {"a detail that is there stays", "- s x.cpp:1 survey", "- s x.cpp:1 survey map",
     "- s x.cpp:1 | survey - 1.00 | map - 2+0+0"},
    {"what lacks an annotation takes it with its handle", "- s x.cpp:1 survey", "@7 t x.cpp:2 s2",
     "- s x.cpp:1 @7 | survey - 1.00"},
    {"an annotation that is there stays", "@6 s x.cpp:1 s2", "@7 t x.cpp:2 s2", "- s x.cpp:1 @6"},
    {"place and label are filled in", "- _ _ survey", "- s x.cpp:1 map", "- s x.cpp:1 | survey - 1.00 | map - 2+0+0"},
    {"a greater status brings its identity", "@6 s x.cpp:1 s2", "@7 t y.cpp:2", "+ t y.cpp:2 @7"},
    {"as far as it has one", "@6 s x.cpp:1 s2", "@7 _ _ s5", "+ s x.cpp:1 @7"},
    {"a status no greater brings none", "@6 s x.cpp:1", "@7 t y.cpp:2 s4", "+ s x.cpp:1 @6"},
    {"what was too deep stays so", "@6 s x.cpp:1", "- __too_deep__ x.cpp:1", "+ s x.cpp:1 @6"},
    {"kinds stay", "- s x.cpp:1 k2 d1 survey", "@7 s x.cpp:1 k4", "+ s x.cpp:1 @7 task, hot spot | survey = 1.00"},
    {"either selects both", "@6 s x.cpp:1", "- s x.cpp:1 selected", "+ s x.cpp:1, @6 selected"},
};

std::string rowWithHandle(const SummaryItemImpl& item) {
  std::string text = support::row(item);
  if (item.annotation()) {
    const std::size_t place = text.find(' ', text.find(':'));
    text.insert(std::min(place, text.size()), " @" + std::to_string(item.handle()));
  }
  return text;
}

TEST(Merge, FollowsEachRule) {
  for (const MergeCase& c : kMerges) {
    ItemText text;
    const auto item = text.item(c.into);
    const auto other = text.item(c.other);
    const std::string before = rowWithHandle(*other);
    item->merge(*other);
    EXPECT_EQ(rowWithHandle(*item), c.want) << c.rule;
    EXPECT_EQ(rowWithHandle(*other), before) << c.rule;
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
