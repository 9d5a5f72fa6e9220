#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <vector>

#include "kelvar/SummaryData.h"
#include "kelvar/SummaryDataLoader.h"
#include "resdir.h"

// A suite and this library are built separately: both find an operation by its slot in the dispatch table. In the C++
// ABI of x86-64, a pointer to a virtual member holds that slot.

using namespace kelvar_2_1_7;

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
  std::iota(expected.begin(), expected.end(), first);
  return expected;
}

/// The number of entries in the table, which an added operation follows. A destructor takes two.
template <class Interface>
std::size_t entries() {
  struct Longer : Interface {
    virtual void last() = 0;
  };
  return slot(&Longer::last);
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
  EXPECT_EQ(entries<Item>(), 20U);
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
  EXPECT_EQ(entries<Result>(), 22U);
}

TEST(Slots, CollectorHasSixOperationsThenItsDestructor) {
  using Collector = SummaryDataLoader::IDataFromCollector;
  EXPECT_EQ(
      slots(&Collector::surveyResultPath, &Collector::surveyVectorizationResultPath, &Collector::suitabilityResultPath,
            &Collector::correctnessResultPath, &Collector::mapResultPath, &Collector::annotationDatabase),
      upFrom(0, 6));
  EXPECT_EQ(entries<Collector>(), 8U);
  EXPECT_EQ(slot(&SummaryDataLoader::IFinalizeTaskContext::dataFromCollector), 0U);
}

TEST(Slots, CollectionAndDetailBeginWithTheirDestructors) {
  using Collection = digestio::SummaryCollection;
  EXPECT_EQ(slots(&Collection::dataKind, &Collection::reserved, &Collection::num_processors,
                  &Collection::num_kova_threads, &Collection::threading_paradigm, &Collection::target_system,
                  &Collection::programMaxGain, &Collection::detailCount, &Collection::detail),
            upFrom(2, 9));
  EXPECT_EQ(entries<Collection>(), 11U);
  using Detail = digestio::SummaryDetail;
  EXPECT_EQ(
      slots(&Detail::detailKind, &Detail::annotationKind, &Detail::locator, &Detail::label, &Detail::surveyView,
            &Detail::surveyVectorizationView, &Detail::suitabilityView, &Detail::correctnessView, &Detail::mapView),
      upFrom(2, 9));
  EXPECT_EQ(entries<Detail>(), 11U);
}

TEST(Slots, ResultDirectoryKeepsItsOrder) {
  using Directory = resdir::IResultDirectory;
  EXPECT_EQ(slots(&Directory::hostName, &Directory::operatingSystem, &Directory::collectionStartTime,
                  &Directory::collectionEndTime, &Directory::finalizationStartTime, &Directory::finalizationEndTime,
                  &Directory::cpuCount, &Directory::cpuFrequency, &Directory::applicationLogPath,
                  &Directory::collectorLogPath, &Directory::commandLogPath),
            upFrom(slot(&Directory::hostName), 11));
}

}  // namespace
