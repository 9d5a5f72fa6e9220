#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <vector>

#include "kelvar/SummaryData.h"
#include "kelvar/SummaryDataLoader.h"
#include "resdir.h"
#include "support/FakeResult.h"

// A suite and this library are built apart: both sides find an operation by its place in the dispatch table alone.
// A pointer to a virtual member holds that place, as the C++ ABI of x86-64 has it.

using namespace kelvar_2_1_7;
using digestio::SummaryCollection;
using digestio::SummaryDetail;
using resdir::IResultDirectory;
using Collector = SummaryDataLoader::IDataFromCollector;

namespace {

using Slots = std::vector<std::size_t>;

template <class Member>
std::size_t slot(Member member) {
  std::size_t place = 0;
  std::memcpy(&place, &member, sizeof place);
  return (place - 1) / sizeof(void*);
}

template <class... Members>
Slots slots(Members... members) {
  return {slot(members)...};
}

Slots upFrom(std::size_t first, std::size_t count) {
  Slots expected(count);
  for (std::size_t index = 0; index < count; ++index) expected[index] = first + index;
  return expected;
}

/// The entry of an object's dispatch table that destroys it and leaves its memory.
template <class T>
void destroyThrough(T* object, std::size_t slot) {
  void (**table)(T*) = nullptr;
  std::memcpy(&table, static_cast<const void*>(object), sizeof table);
  table[slot](object);
}

/// Tells of its end.
struct Guard {
  bool* gone;
  ~Guard() { *gone = true; }
};

struct AnyCollector final : Collector {
  explicit AnyCollector(bool* gone) : guard{gone} {}
  std::string surveyResultPath() override { return {}; }
  std::string surveyVectorizationResultPath() override { return {}; }
  std::string suitabilityResultPath() override { return {}; }
  std::string correctnessResultPath() override { return {}; }
  std::string mapResultPath() override { return {}; }
  boost::shared_ptr<sitenotes::database_t> annotationDatabase() override { return {}; }
  Guard guard;
};

struct AnyResult final : support::FakeResult {
  explicit AnyResult(bool* gone) : guard{gone} {}
  Guard guard;
};

template <class T>
bool destructorStandsAt(std::size_t slot) {
  alignas(T) std::byte memory[sizeof(T)];
  bool gone = false;
  destroyThrough(new (memory) T(&gone), slot);
  return gone;
}

TEST(Slots, ItemHasTwentyOperationsAndNoDestructor) {
  using Item = SummaryItem;
  using Status = SummaryDataStatus (Item::*)() const;
  using StatusOfKind = SummaryDataStatus (Item::*)(digestio::SummaryDataKind) const;
  EXPECT_EQ(slots(&Item::detailKind, &Item::annotationKind, &Item::locator, &Item::label, &Item::annotation,
                  &Item::handle, Status(&Item::summaryDataStatus), StatusOfKind(&Item::summaryDataStatus),
                  &Item::summaryDataCount, &Item::summaryDetail, &Item::surveyDetail, &Item::surveyVectorizationDetail,
                  &Item::suitabilityDetail, &Item::correctnessDetail, &Item::mapDetail, &Item::collectionAnnotation,
                  &Item::setSelected, &Item::isSelected, &Item::getCurrentLocator, &Item::getCollectionLocator),
            upFrom(0, 20));
  EXPECT_FALSE(std::has_virtual_destructor_v<Item>);
}

TEST(Slots, ResultHasTwentyOperationsThenItsDestructor) {
  using Result = SummaryResult;
  EXPECT_EQ(
      slots(&Result::resultCount, &Result::result, &Result::summaryCollection, &Result::collectionTime,
            &Result::collectionDuration, &Result::finalizationTime, &Result::finalizationDuration, &Result::hostName,
            &Result::cpuCount, &Result::cpuFrequency, &Result::operatingSystem, &Result::applicationLog,
            &Result::collectorLog, &Result::commandLog, &Result::likelyDebugInfoMissing, &Result::threading_paradigm,
            &Result::num_processors, &Result::num_kova_threads, &Result::target_system, &Result::programMaxGain),
      upFrom(0, 20));
  EXPECT_TRUE(destructorStandsAt<AnyResult>(20));
}

TEST(Slots, CollectorHasSixOperationsThenItsDestructor) {
  EXPECT_EQ(
      slots(&Collector::surveyResultPath, &Collector::surveyVectorizationResultPath, &Collector::suitabilityResultPath,
            &Collector::correctnessResultPath, &Collector::mapResultPath, &Collector::annotationDatabase),
      upFrom(0, 6));
  EXPECT_TRUE(destructorStandsAt<AnyCollector>(6));
  EXPECT_EQ(slot(&SummaryDataLoader::IFinalizeTaskContext::dataFromCollector), 0U);
}

TEST(Slots, CollectionAndDetailBeginWithTwoEntriesOfTheirDestructors) {
  using Collection = SummaryCollection;
  EXPECT_EQ(slots(&Collection::dataKind, &Collection::reserved, &Collection::num_processors,
                  &Collection::num_kova_threads, &Collection::threading_paradigm, &Collection::target_system,
                  &Collection::programMaxGain, &Collection::detailCount, &Collection::detail),
            upFrom(2, 9));
  using Detail = SummaryDetail;
  EXPECT_EQ(
      slots(&Detail::detailKind, &Detail::annotationKind, &Detail::locator, &Detail::label, &Detail::surveyView,
            &Detail::surveyVectorizationView, &Detail::suitabilityView, &Detail::correctnessView, &Detail::mapView),
      upFrom(2, 9));
}

TEST(Slots, ResultDirectoryKeepsItsOrder) {
  using Directory = IResultDirectory;
  EXPECT_EQ(slots(&Directory::hostName, &Directory::operatingSystem, &Directory::collectionStartTime,
                  &Directory::collectionEndTime, &Directory::finalizationStartTime, &Directory::finalizationEndTime,
                  &Directory::cpuCount, &Directory::cpuFrequency, &Directory::applicationLogPath,
                  &Directory::collectorLogPath, &Directory::commandLogPath),
            upFrom(slot(&Directory::hostName), 11));
}

}  // namespace
