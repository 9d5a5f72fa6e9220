// Whether the fast passes join as the plain ones do.
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <deque>
#include <random>
#include <vector>

#include "items/ItemText.h"
#include "items/Join.h"
#include "items/LabelTwins.h"
#include "items/PlainJoining.h"
#include "support/Fakes.h"
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

void foldTwins(SummaryItems& items) {
  ResultSites sites(std::move(items));
  foldLabelTwins(sites);
  items = std::move(sites.items());
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
      expectSame(before, foldTwins, plain::foldLabelTwins);
      if (HasFatalFailure()) return;
    }
  }
}

std::string randomPlace(std::mt19937& random) {
  const auto pick = [&](unsigned bound) { return random() % bound; };
  return std::string(1, "pq"[pick(2)]) + "/x" + "12"[pick(2)] + ".cpp:" + std::to_string(pick(4) + 1);
}

std::string randomList(std::mt19937& random, int sites, int handles = 40, int annotatedOfThree = 2) {
  const auto pick = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
  constexpr const char* kRecords[] = {"survey", "vec", "suit", "corr", "map"};
  std::string text;
  for (int i = pick(sites) + 1; i > 0; --i) {
    const bool annotated = pick(3) < annotatedOfThree;
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

TEST(Merge, LeavesNoItemForOneWithItsAnnotationThatSaysMore) {
  std::mt19937 random(17);
  int found = 0;
  for (int round = 0; round < 4000; ++round) {
    ItemText text;
    const SummaryItems items = text.list(randomList(random, 5));
    for (int merge = 0; merge < 8; ++merge) {
      SummaryItemImpl& item = *items[random() % items.size()];
      const SummaryItemImpl& other = *items[random() % items.size()];
      if (&item != &other) item.merge(other);
      if (!item.hasAnnotation() || !item.isLikeItsCopy()) continue;
      ++found;
      const sitenotes::annotation_t& annotation = *item.annotation();
      ASSERT_EQ(item.detailKind(), digestio::kAnnotatedSite) << round;
      ASSERT_EQ(item.annotationKind(), annotation.get_kind()) << round;
      ASSERT_EQ(item.labelText(), annotation.get_label()) << round;
      ASSERT_EQ(item.place().display_order(annotation.get_locator()), 0) << round;
    }
  }
  EXPECT_GT(found, 1000);
}

SummaryItems copiesOf(const SummaryItems& items) {
  SummaryItems copies;
  for (const auto& item : items) copies.append(std::make_unique<SummaryItemImpl>(SummaryItemImpl::StateOf{*item}));
  return copies;
}

/// Joins one result after the other: each relies on what those before it left. In which order they leave the list is
/// theirs to choose.
void expectSameJoins(const std::string& list, const std::vector<std::string>& incoming) {
  std::vector<SummaryDataStatus> quick;
  std::vector<SummaryDataStatus> slow;
  std::deque<ItemText> results;
  JoinMemory memory;
  expectSame(
      list,
      [&](SummaryItems& items) {
        for (const std::string& text : incoming) {
          ResultSites result(results.emplace_back().list(text));
          quick.push_back(join(items, result, memory));
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

/// Annotations as they were recorded, each of a handle of its own.
boost::shared_ptr<support::FakeDatabase> randomDatabase(std::mt19937& random, int sites) {
  const auto database = boost::make_shared<support::FakeDatabase>();
  for (int handle = 1; handle <= sites; ++handle) {
    const bool isTooDeep = random() % 64 == 0;
    const std::string label = random() % 6 == 0 ? "" : std::string(1, "abcd"[random() % 4]);
    const auto kind = static_cast<support::Kind>(random() % 3 * 2);
    const auto annotation = random() % 8 == 0
                                ? support::annotation(label, "", kind)
                                : support::annotation(isTooDeep ? "__too deep__" : label, randomPlace(random), kind);
    database->site(static_cast<unsigned long>(handle), annotation);
  }
  return database;
}

/// One result after the other, which all know the same recorded sites.
TEST(Join, OfResultsThatKnowRecordedSitesEqualsThePlainOne) {
  std::mt19937 random(20261124);
  for (int round = 0; round < 500; ++round) {
    const int sites = static_cast<int>(random() % (round % 10 == 0 ? 300 : 30));
    const auto database = randomDatabase(random, sites);
    RecordedSites recorded(nullptr);
    recorded.setDatabase(database);
    recorded.read();
    std::deque<ItemText> texts;
    const std::string list = randomList(random, 4 + round % 40, sites + 4, 3);
    SummaryItems quick = texts.emplace_back().list(list);
    SummaryItems slow = texts.emplace_back().list(list);
    JoinMemory memory;
    for (int i = 0; i < 4; ++i) {
      const std::string details = randomList(random, 4 + round % 20, 4, 0);
      const auto kind = static_cast<digestio::SummaryDataKind>(random() % 5);
      const support::Known known{random() % 2 == 0, random() % 2 == 0, random() % 2 == 0, random() % 2 == 0};
      ResultSites result(texts.emplace_back().list(details));
      result.add(recorded, {{known.survey, known.survey, known.suitability, known.correctness, known.map}});
      SummaryItems items = texts.emplace_back().list(details);
      for (const unsigned long handle : database->get_sequences()) {
        items.append(support::itemFrom(database->get_latest_annotation(handle), handle, kNoMatchCurrent, known));
      }
      result.fold(kind);
      plain::exactMerge(items, kind);
      ASSERT_EQ(support::rows(result), support::rows(items)) << "fold " << round << '\n' << details;
      ASSERT_EQ(join(quick, result, memory), plain::join(slow, items)) << "join " << round << '\n' << details;
      SummaryItems sorted = copiesOf(quick);
      sorted.sort(kSortKind);
      slow.sort(kSortKind);
      ASSERT_EQ(support::rows(sorted), support::rows(slow)) << "join " << round << '\n' << list << details;
    }
  }
}

TEST(Join, OfAResultIsAsGoodAsItsOwnSitesAre) {
  const auto database = boost::make_shared<support::FakeDatabase>();
  database->site(1, support::annotation("a", "x.cpp:1")).site(2, support::annotation("b", "y.cpp:9"));
  RecordedSites recorded(nullptr);
  recorded.setDatabase(database);
  recorded.read();
  std::deque<ItemText> texts;
  SummaryItems list = texts.emplace_back().list("@1 a x.cpp:1\n@2 b y.cpp:2\n");
  JoinMemory memory;
  const auto level = [&](const std::string& details) {
    ResultSites result(texts.emplace_back().list(details));
    result.add(recorded, {});
    result.fold(digestio::kSurvey);
    return join(list, result, memory);
  };
  ResultSites before(texts.emplace_back().list(""));  // of a result for which there were no recorded sites yet
  EXPECT_EQ(join(list, before, memory), 4);
  EXPECT_EQ(level(""), 3) << "the second site has moved since";
  EXPECT_EQ(level("- a x.cpp:1 survey\n"), 3) << "what the first join found holds";
  EXPECT_EQ(level("- b y.cpp:2 map\n"), 4) << "the result saw it where it is now";
  EXPECT_EQ(level("- c z.cpp:2 map\n"), 2);
  EXPECT_EQ(level(""), 3);
}

TEST(Join, FindsAnAnnotationThatTheOneBeforeItFoldedIntoItsHandle) {
  expectSameJoins("-7 a x.cpp:1 survey\n", {"@7 a x.cpp:2 survey suit\n", "@7 a x.cpp:2 map\n"});
  expectSameJoins("-7 a x.cpp:1 survey\n", {"@7 a x.cpp:2\n", "@7 a x.cpp:2 map\n"});
}

}  // namespace
