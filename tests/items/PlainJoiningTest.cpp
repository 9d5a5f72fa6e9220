// Whether the fast passes join as the plain ones do.
#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <vector>

#include "items/ItemText.h"
#include "items/PlainJoining.h"
#include "items/joining/FoldLabelTwins.h"
#include "items/joining/Join.h"
#include "support/Rows.h"

using namespace kelvar_2_1_7;

namespace {

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

std::string randomPlace(std::mt19937& random) {
  const auto pick = [&](unsigned bound) { return random() % bound; };
  return std::string(1, "pq"[pick(2)]) + "/x" + "12"[pick(2)] + ".cpp:" + std::to_string(pick(4) + 1);
}

std::string randomList(std::mt19937& random, int sites, int handles = 40) {
  const auto pick = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
  constexpr const char* kRecords[] = {"survey", "vec", "suit", "corr", "map"};
  std::string text;
  for (int i = pick(sites) + 1; i > 0; --i) {
    const bool annotated = pick(3) < 2;
    text += annotated ? '@' + std::to_string(pick(handles)) : "-";
    text += pick(6) == 0 ? " _" : std::string(" ") + static_cast<char>('a' + pick(4));
    text += ' ' + (pick(8) == 0 ? "_" : randomPlace(random));
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

/// Joins one result after the other. The order in which they leave hot spots and loops is theirs to choose.
void expectSameJoins(const std::string& list, const std::vector<std::string>& incoming) {
  std::vector<SummaryDataStatus> quick;
  std::vector<SummaryDataStatus> slow;
  std::deque<ItemText> results;
  expectSame(
      list,
      [&](SummaryItems& items) {
        for (const std::string& text : incoming) {
          const SummaryItems result = results.emplace_back().list(text);
          quick.push_back(join(items, result));
        }
        items.sort(kSortKind);
      },
      [&](SummaryItems& items) {
        for (const std::string& text : incoming) {
          SummaryItems result = results.emplace_back().list(text);
          slow.push_back(plain::join(items, result));
        }
        items.sort(kSortKind);
      });
  ASSERT_EQ(quick, slow) << list;
}

TEST(Join, ThreeEqualPlainJoinsOnRandomLists) {
  std::mt19937 random(11);
  for (int round = 0; round < 3000; ++round) {
    const int handles = round % 2 == 0 ? 40 : 4000;  // of many, few come twice
    std::vector<std::string> incoming;
    for (int i = 0; i < 3; ++i) incoming.push_back(randomList(random, 4 + round % 40, handles));
    expectSameJoins(randomList(random, 4 + round % 40, handles), incoming);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
