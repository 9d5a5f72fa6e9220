#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>

#include "PerKind.h"
#include "items/CollectionInfos.h"
#include "items/ItemArena.h"
#include "kelvar/SummaryData.h"
#include "kelvar/SummaryItem.h"

namespace kelvar_2_1_7 {

/// The only implementation of SummaryItem. Folds and joins work on its fields; all others use the interface.
class SummaryItemImpl final : public SummaryItem {
 public:
  using CollectionInfo = kelvar_2_1_7::CollectionInfo;

  /// An annotated site. `annotation` must not be empty. Each flag fills the record of its kind with `status` and a
  /// count of 1 and no detail; `survey` fills that of the vectorization survey too.
  SummaryItemImpl(SummaryData::Impl* owner, boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle,
                  SummaryDataStatus status, bool survey, bool suitability, bool correctness, bool map);
  /// A site that an analysis reported. `detail` may be null, `annotation` may be empty. A detail without a view of any
  /// kind is asked for no more than its detail kind.
  SummaryItemImpl(SummaryData::Impl* owner, digestio::SummaryDetail* detail,
                  boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle);
  SummaryItemImpl& operator=(const SummaryItemImpl&) = delete;

  /// A new item with the records of `source`, which must not be null; the caller owns it. Identity is read afresh from
  /// the source's annotation where it has one: a copy forgets the detail kind, and what merges made of place, label and
  /// annotation kind.
  [[nodiscard]] static SummaryItemImpl* copySummaryItem(SummaryItemImpl* source);
  /// Folds `other`, which is the same site, into this item; `other` stays as it is. See ItemMerge.cpp for which
  /// values win.
  void merge(SummaryItemImpl* other);

  [[nodiscard]] digestio::SummaryDetailKind detailKind() const override { return detailKind_; }
  [[nodiscard]] sitenotes::annotation_t::kind_t annotationKind() const override { return annotationKind_; }
  [[nodiscard]] sitenotes::locator_t locator() const override { return locator_; }
  [[nodiscard]] std::string label() const override { return label_; }
  [[nodiscard]] boost::shared_ptr<sitenotes::annotation_t> annotation() const override { return annotation_; }
  [[nodiscard]] unsigned long handle() const override { return handle_; }
  [[nodiscard]] SummaryDataStatus summaryDataStatus() const override { return status_; }
  [[nodiscard]] SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const override {
    return collections_.status(kind);
  }
  [[nodiscard]] unsigned int summaryDataCount(digestio::SummaryDataKind kind) const override {
    return collections_.count(kind);
  }
  [[nodiscard]] digestio::SummaryDetail* summaryDetail(digestio::SummaryDataKind kind) const override {
    return collections_.detail(kind);
  }
  [[nodiscard]] digestio::SurveyDetail* surveyDetail() const override;
  [[nodiscard]] digestio::SurveyVectorizationDetail* surveyVectorizationDetail() const override;
  [[nodiscard]] digestio::SuitabilityDetail* suitabilityDetail() const override;
  [[nodiscard]] digestio::CorrectnessDetail* correctnessDetail() const override;
  [[nodiscard]] digestio::MapDetail* mapDetail() const override;
  [[nodiscard]] boost::shared_ptr<sitenotes::annotation_t> collectionAnnotation(
      digestio::SummaryDataKind kind) const override {
    return collections_.annotation(kind);
  }
  void setSelected(bool selected) override { selected_ = selected; }
  [[nodiscard]] bool isSelected() const override { return selected_; }
  bool getCurrentLocator(sitenotes::locator_t& out, unsigned long& handle) override;
  bool getCollectionLocator(digestio::SummaryDataKind kind, sitenotes::locator_t& out, unsigned long& handle) override;

  virtual ~SummaryItemImpl();  // declared last, to keep the slots of SummaryItem; items are deleted through this class
  static void* operator new(std::size_t size) { return item_arena::allocate(size); }
  static void operator delete(void* item) noexcept { item_arena::release(item); }

  /// The stored place and label without a copy, and cheap questions, for passes over whole lists.
  [[nodiscard]] const sitenotes::locator_t& place() const noexcept { return locator_; }
  [[nodiscard]] const std::string& labelText() const noexcept { return label_; }
  [[nodiscard]] bool hasAnnotation() const noexcept { return annotation_ != nullptr; }
  /// Whether the typed detail of `kind` is there.
  [[nodiscard]] bool shows(digestio::SummaryDataKind kind) const;
  /// Whether the item is in the view. For the view alone.
  [[nodiscard]] bool isShown() const noexcept { return shown_; }
  void setShown(bool shown) noexcept { shown_ = shown; }

  /// The orderings, in the order of SummaryMapping: whether `a` comes before `b`. Null items come last. Not all of
  /// them are strict weak orders; SummaryItems::sort copes with that. Defined in view/ordering/Orderings.cpp.
  /// The join compares by kind alone; the others are for those who sort items themselves.
  static bool compareLocator(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareKind(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareLabel(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSurveyCpuTime(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSurveyPriority(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSurveyId(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSurveyVectorizationSelfTime(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSurveyVectorizationTotalTime(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSurveyVectorizationPriority(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSuitabilitySelfTime(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSuitabilitySelfMaxGain(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareSortSuitabilityTotalMaxGain(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareCorrectnessErrors(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareCorrectnessWarnings(SummaryItemImpl* a, SummaryItemImpl* b);
  static bool compareGeneralKindLocator(SummaryItemImpl* a, SummaryItemImpl* b);

 private:
  explicit SummaryItemImpl(SummaryData::Impl* owner);  // an empty item
  SummaryItemImpl(const SummaryItemImpl&) = default;
  /// `source` as its annotation has it now; it must have one.
  struct ReadAfresh {};
  SummaryItemImpl(const SummaryItemImpl& source, ReadAfresh);
  void takeIdentity(const boost::shared_ptr<sitenotes::annotation_t>& annotation);

  SummaryData::Impl* owner_;
  digestio::SummaryDetailKind detailKind_;
  sitenotes::annotation_t::kind_t annotationKind_;
  SummaryDataStatus status_;
  sitenotes::locator_t locator_;
  std::string label_;
  boost::shared_ptr<sitenotes::annotation_t> annotation_;
  unsigned long handle_ = 0;
  [[no_unique_address]] CollectionInfos collections_;  // its tail padding takes the flags
  bool selected_ = false;
  bool shown_ = true;
};

static_assert(alignof(SummaryItemImpl) <= alignof(void*), "the arena aligns no better");

/// The annotation database of the object that an item belongs to; empty if it has none. All that an item needs of
/// its owner, so that items can be built and read without knowing it. Defined with the data object.
[[nodiscard]] const boost::shared_ptr<sitenotes::database_t>& annotationDatabaseOf(const SummaryData::Impl& owner);

}  // namespace kelvar_2_1_7
