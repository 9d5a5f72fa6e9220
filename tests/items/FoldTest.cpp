#include <gtest/gtest.h>

#include <random>

#include "items/ItemText.h"
#include "items/Join.h"
#include "items/LabelTwins.h"
#include "items/PlainJoining.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

struct FoldCase {
  const char* rule;
  const char* before;
  const char* after;
  digestio::SummaryDataKind kind = digestio::kSurvey;
};

constexpr FoldCase kFolds[] = {
    {"neighbours in files of one leaf are one site, whatever their directories and lines",
     "- a p/x.cpp:1 survey\n- b q/x.cpp:9 map\n", "- a p/x.cpp:1 | survey - 1.00 | map - 2+0+0\n"},
    {"all that match fold into the first", "- a x.cpp:1 survey\n- b x.cpp:2 map\n- c x.cpp:3 corr\n",
     "- a x.cpp:1 | survey - 1.00 | correctness - 3 0+0 | map - 2+0+0\n"},
    {"two details of one analysis are two sites", "- a x.cpp:1 survey\n- a x.cpp:1 survey\n",
     "- a x.cpp:1 | survey - 1.00\n- a x.cpp:1 | survey - 2.00\n"},
    {"vectorization may come twice", "- a x.cpp:1 vec\n- a x.cpp:1 vec\n", "- a x.cpp:1 | vectorization - 1.00/0.00\n"},
    {"other leaves, annotation kinds and detail kinds stand apart",
     "- a x.cpp:1 survey\n- a x.cpp:2 k2 map\n- a y.cpp:1 corr\n- a z.cpp:1 d1 survey\n- a z.cpp:2 d1 map\n",
     "- a x.cpp:1 | survey - 1.00\n- a x.cpp:2 task | map - 2+0+0\n- a y.cpp:1 | correctness - 3 0+0\n"
     "- a z.cpp:1, hot spot | survey - 4.00\n- a z.cpp:2, hot spot | map - 5+0+0\n"},
    {"label twins fold into the one that stands first", "@1 a x.cpp:1\n@2 a y.cpp:1\n@3 b z.cpp:1\n",
     "+ a x.cpp:1\n+ b z.cpp:1\n"},
    {"a twin that stands last stays apart", "@1 a x.cpp:1\n@2 b y.cpp:1\n@3 a z.cpp:1\n",
     "+ a x.cpp:1\n+ b y.cpp:1\n+ a z.cpp:1\n"},
    {"a task goes into the task loop of its label, which takes its place",
     "@1 a x.cpp:1 k2 s2\n@2 b y.cpp:1 k4\n@3 a z.cpp:1 k4\n@4 c zz.cpp:1\n",
     "+ a z.cpp:1 taskloop\n+ b y.cpp:1 taskloop\n+ c zz.cpp:1\n"},
    {"never a task loop into a task", "@1 a x.cpp:1 k4\n@2 a y.cpp:1 k1\n@3 a z.cpp:1 k2\n",
     "+ a x.cpp:1 taskloop\n+ a y.cpp:1 end parallel\n+ a z.cpp:1 task\n"},
    {"empty labels are no twins", "@1 _ x.cpp:1\n@2 _ y.cpp:1\n@3 a z.cpp:1\n",
     "+  x.cpp:1\n+  y.cpp:1\n+ a z.cpp:1\n"},
    {"sites without an annotation are no twins", "- a x.cpp:1 survey\n@2 a y.cpp:1\n@3 b z.cpp:1\n",
     "- a x.cpp:1 | survey - 1.00\n+ a y.cpp:1\n+ b z.cpp:1\n"},
    {"a vectorization survey looks at the slowest first",
     "- a x.cpp:1 d2 vec\n- a y.cpp:1 d2 vec\n- a z.cpp:1 survey\n",
     "- a y.cpp:1, loop | vectorization - 2.00/0.00\n- a x.cpp:1, loop | vectorization - 1.00/0.00\n"
     "- a z.cpp:1 | survey - 3.00\n",
     digestio::kSurveyVectorization},
};

TEST(Fold, FollowsEachRule) {
  for (const FoldCase& c : kFolds) {
    ItemText text;
    SummaryItems items = text.list(c.before);
    items.exactMerge(c.kind);
    EXPECT_EQ(support::rows(items), c.after) << c.rule;
  }
}

TEST(Fold, SurvivesListsThatAreEmptyOrHoldNothing) {
  SummaryItems items;
  items.exactMerge(digestio::kMap);
  EXPECT_EQ(items.size(), 0U);
  ItemText text;
  items.append(nullptr);
  items.append(text.item("@1 a x.cpp:1"));
  items.append(nullptr);
  items.exactMerge(digestio::kMap);
  EXPECT_NE(support::rows(items).find("+ a x.cpp:1"), std::string::npos);
}

/// Runs both and compares what is left: which details each item kept tells who was merged into whom, and when.
template <class Fast, class Plain>
void expectSame(const std::string& before, Fast fast, Plain plain) {
  ItemText text;
  SummaryItems quick = text.list(before);
  ItemText again;
  SummaryItems slow = again.list(before);
  fast(quick);
  plain(slow);
  ASSERT_EQ(support::rows(quick), support::rows(slow)) << before;
}

TEST(LabelTwins, EqualThePlainPassOverAllSmallLists) {
  // Details of two analyses in turn: each item keeps its own and takes the other's from the first it meets.
  constexpr const char* kItems[] = {" a x.cpp:1 k2 ", " a x.cpp:1 k4 ", " b x.cpp:1 k2 ", " a x.cpp:1 k0 "};
  for (int length = 0; length <= 6; ++length) {
    for (int code = 0; code < 1 << (2 * length); ++code) {
      std::string before;
      for (int i = 0; i < length; ++i) {
        before += '@' + std::to_string(i + 1) + kItems[code >> (2 * i) & 3] + (i % 2 == 0 ? "survey\n" : "map\n");
      }
      expectSame(before, foldLabelTwins, plain::foldLabelTwins);
      if (HasFatalFailure()) return;
    }
  }
}

std::string randomList(std::mt19937& random, int sites) {
  const auto pick = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
  constexpr const char* kRecords[] = {"survey", "vec", "suit", "corr", "map"};
  std::string text;
  for (int i = pick(sites) + 1; i > 0; --i) {
    const bool annotated = pick(3) != 0;
    text += annotated ? '@' + std::to_string(pick(sites)) : "-";
    text += pick(6) == 0 ? " _" : std::string(" ") + static_cast<char>('a' + pick(4));
    text += pick(8) == 0
                ? " _"
                : std::string(" ") + "pq"[pick(2)] + "/x" + "12"[pick(2)] + ".cpp:" + std::to_string(pick(4) + 1);
    text += " k" + std::to_string(pick(3) * 2) + " s" + std::to_string(pick(2) * 3 + 2);
    for (const char* record : kRecords) {
      if (pick(5) == 0) text += std::string(" ") + record;
    }
    if (!annotated && pick(4) == 0) text += " d" + std::to_string(pick(3));
    text += '\n';
  }
  return text;
}

TEST(Fold, EqualsThePlainPassesOnRandomLists) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 3000; ++round) {
    const auto kind = static_cast<digestio::SummaryDataKind>(round % 5);
    expectSame(
        randomList(random, 4 + round % 40), [&](SummaryItems& items) { items.exactMerge(kind); },
        [&](SummaryItems& items) { plain::exactMerge(items, kind); });
    if (HasFatalFailure()) return;
  }
}

TEST(Join, EqualsThePlainJoinOnRandomLists) {
  std::mt19937 random(11);
  for (int round = 0; round < 3000; ++round) {
    const std::string incoming = randomList(random, 4 + round % 40);
    SummaryDataStatus quick{};
    SummaryDataStatus slow{};
    ItemText results;
    ItemText resultsAgain;
    expectSame(
        randomList(random, 4 + round % 40),
        [&](SummaryItems& items) {
          SummaryItems result = results.list(incoming);
          quick = join(items, result);
        },
        [&](SummaryItems& items) {
          SummaryItems result = resultsAgain.list(incoming);
          slow = plain::join(items, result);
        });
    ASSERT_EQ(quick, slow);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
