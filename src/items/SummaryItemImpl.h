#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <new>
#include <string>

#include "PerKind.h"
#include "digestio.h"
#include "items/CallLine.h"
#include "items/CollectionAnnotations.h"
#include "items/KindMarks.h"
#include "items/LabelMarks.h"
#include "items/RecordedSite.h"
#include "kelvar/SummaryData.h"
#include "kelvar/SummaryItem.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The one kind of item there is. Joins work on the fields; everyone else reads through SummaryItem.
class SummaryItemImpl final : public SummaryItem {
 public:
  /// What one analysis says of the site.
  struct CollectionInfo {
    SummaryDataStatus status;
    unsigned int count;               // 0 or 1
    digestio::SummaryDetail* detail;  // the result that loaded it owns it
  };

  /// An annotated site. `annotation` must not be empty. Each flag fills the record of its kind with `status` and a
  /// count of 1 and no detail; `survey` fills that of the vectorization survey too.
  SummaryItemImpl(SummaryData::Impl* owner, boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle,
                  SummaryDataStatus status, bool survey, bool suitability, bool correctness, bool map);
  /// The same of a site as it was recorded, which the analyses `known` have looked at and not matched with today's.
  SummaryItemImpl(SummaryData::Impl* owner, const RecordedSite& site, const PerKind<bool>& known);
  /// A site that an analysis reported. `detail` may be null, `annotation` may be empty.
  SummaryItemImpl(SummaryData::Impl* owner, digestio::SummaryDetail* detail,
                  boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle);
  /// See copySummaryItem.
  struct CopyOf {
    const SummaryItemImpl& source;
  };
  explicit SummaryItemImpl(CopyOf copy);
  /// The same of one that is not needed any more, and may only be destroyed from then on.
  struct LastOf {
    SummaryItemImpl& source;
  };
  explicit SummaryItemImpl(LastOf last);
  /// All that an item is, its selection included, for takeBack.
  struct StateOf {
    const SummaryItemImpl& source;
  };
  explicit SummaryItemImpl(StateOf state) : SummaryItemImpl(state.source) { inArena_ = false; }
  SummaryItemImpl& operator=(const SummaryItemImpl&) = delete;

  /// Items stand in the arena of the list that made them, or alone.
  static void operator delete(SummaryItemImpl* item, std::destroying_delete_t) noexcept;
  static void operator delete(void* memory) noexcept { ::operator delete(memory); }  // of one that never came to be

  /// An item of its own with the records of `source`. Identity is read afresh from the source's annotation where it
  /// has one: a copy forgets the detail kind, and what merges made of place, label and annotation kind.
  [[nodiscard]] static std::unique_ptr<SummaryItemImpl> copySummaryItem(const SummaryItemImpl& source);

  /// Whether a copy would say the same of the site as this item does. What an annotation says never changes.
  [[nodiscard]] bool isLikeItsCopy() const noexcept { return !annotation_ || saysAsAnnotated_; }
  void becomeLikeItsCopy();
  /// Makes the item what it was when `state` was taken of it.
  void takeBack(SummaryItemImpl& state) noexcept;

  /// Folds `other`, which stands for the same site, into this item. See ItemMerge.cpp for who wins what.
  void merge(const SummaryItemImpl& other);
  /// Whether merge(other) would change anything: the records, or the rest. Few sites of a program are seen by any one
  /// analysis, and of most of those it changes the records alone.
  [[nodiscard]] bool gainsRecordsFrom(const SummaryItemImpl& other) const;
  [[nodiscard]] bool gainsMoreFrom(const SummaryItemImpl& other) const;
  /// Whether an item of the site, of which no analysis says anything, has nothing to add, now and as long as this one
  /// stays like its copy.
  [[nodiscard]] bool gainsNothingFrom(const RecordedSite& site) const;

  /// What the records of an item were before merges added to them, which replace no detail.
  struct Records {
    KindStatuses statuses;
    KindSet counted;
    KindSet seen;
  };
  [[nodiscard]] Records records() const noexcept { return {statuses_, counted_, seen_}; }
  void takeBack(const Records& records) noexcept;

  /// What the join that is under way has made of the item.
  enum class InJoin : unsigned char { kLeft, kRecordsChanged, kChanged, kAdded };
  [[nodiscard]] InJoin inJoin() const noexcept { return inJoin_; }
  void setInJoin(InJoin made) noexcept { inJoin_ = made; }

  [[nodiscard]] digestio::SummaryDetailKind detailKind() const override { return detailKind_; }
  [[nodiscard]] sitenotes::annotation_t::kind_t annotationKind() const override { return annotationKind_; }
  [[nodiscard]] sitenotes::locator_t locator() const override { return locator_; }
  [[nodiscard]] std::string label() const override { return label_; }
  [[nodiscard]] boost::shared_ptr<sitenotes::annotation_t> annotation() const override { return annotation_; }
  [[nodiscard]] unsigned long handle() const override { return handle_; }
  [[nodiscard]] SummaryDataStatus summaryDataStatus() const override { return status_; }
  [[nodiscard]] SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const override {
    return statuses_[kind];
  }
  [[nodiscard]] unsigned int summaryDataCount(digestio::SummaryDataKind kind) const override {
    return record(kind).count;
  }
  [[nodiscard]] digestio::SummaryDetail* summaryDetail(digestio::SummaryDataKind kind) const override {
    return details_[kind];
  }
  [[nodiscard]] digestio::SurveyDetail* surveyDetail() const override;
  [[nodiscard]] digestio::SurveyVectorizationDetail* surveyVectorizationDetail() const override;
  [[nodiscard]] digestio::SuitabilityDetail* suitabilityDetail() const override;
  [[nodiscard]] digestio::CorrectnessDetail* correctnessDetail() const override;
  [[nodiscard]] digestio::MapDetail* mapDetail() const override;
  [[nodiscard]] boost::shared_ptr<sitenotes::annotation_t> collectionAnnotation(
      digestio::SummaryDataKind kind) const override {
    return collectionAnnotations_.of(kind);
  }
  void setSelected(bool selected) override { selected_ = selected; }
  [[nodiscard]] bool isSelected() const override { return selected_; }
  bool getCurrentLocator(sitenotes::locator_t& out, unsigned long& handle) override;
  bool getCollectionLocator(digestio::SummaryDataKind kind, sitenotes::locator_t& out, unsigned long& handle) override;

  virtual ~SummaryItemImpl();  // behind the twenty operations: items are deleted through this class alone

  /// What the view knows of the item.
  [[nodiscard]] bool isShown() const noexcept { return shown_; }
  void setShown(bool shown) noexcept { shown_ = shown; }

  /// The stored place, label and annotation without a copy, for passes over whole lists.
  [[nodiscard]] const sitenotes::locator_t& place() const noexcept { return locator_; }
  [[nodiscard]] const std::string& labelText() const noexcept { return label_; }
  [[nodiscard]] bool hasLabel() const noexcept { return labelMarks_.isThere; }
  [[nodiscard]] std::uint32_t labelHash() const noexcept { return labelMarks_.hash; }
  [[nodiscard]] bool hasAnnotation() const noexcept { return annotation_ != nullptr; }
  /// The kinds that there is a detail of; asks less memory than the details themselves.
  [[nodiscard]] KindSet seen() const noexcept { return seen_; }
  [[nodiscard]] bool hasDetail(digestio::SummaryDataKind kind) const noexcept { return seen_.has(kind); }
  /// Has the processor fetch what summaryDetail(kind) is going to read, if there is one, for passes over whole lists.
  void prefetch(digestio::SummaryDataKind kind) const noexcept {
    if (hasDetail(kind)) callLine(&details_[kind]);
  }
  /// Whether the typed detail of `kind` is there.
  [[nodiscard]] bool shows(digestio::SummaryDataKind kind) const;

  /// The orderings, in the order of SummaryMapping: whether `a` stands before `b`. Null items stand last. Not all of
  /// them are strict weak orders; SummaryItems::sort copes with that. Defined with the view.
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
  friend class ItemArena;

  explicit SummaryItemImpl(SummaryData::Impl* owner);  // an empty item
  SummaryItemImpl(const SummaryItemImpl&) = default;
  SummaryItemImpl(SummaryItemImpl&&) = default;
  SummaryItemImpl& operator=(SummaryItemImpl&&) noexcept = default;
  void takeAnnotation(const SummaryItemImpl& other);
  void takePlace(const SummaryItemImpl& other);
  void takeLabel(const SummaryItemImpl& other);
  void setLabel(std::string label) noexcept;
  [[nodiscard]] CollectionInfo record(digestio::SummaryDataKind kind) const noexcept {
    return {.status = statuses_[kind], .count = counted_.has(kind) ? 1U : 0U, .detail = details_[kind]};
  }
  /// Fills the record of each kind that is `known` with the item's status and a count of 1.
  void setKnown(const PerKind<bool>& known) noexcept;
  /// Fills a record that has no detail yet.
  void setRecord(digestio::SummaryDataKind kind, const CollectionInfo& record) noexcept;

  // What joins ask of every item stands within 64 bytes, with the table of operations. The records lie as what is asked
  // together: statuses, counts, whether there is a detail, and apart from those the details.
  unsigned long handle_;
  boost::shared_ptr<sitenotes::annotation_t> annotation_;
  sitenotes::locator_t locator_;
  digestio::SummaryDetailKind detailKind_;
  sitenotes::annotation_t::kind_t annotationKind_;
  KindStatuses statuses_;  // of the records, one for each kind
  KindSet counted_;        // the records that something stands behind
  KindSet seen_;           // those with a detail
  SummaryDataStatus status_ : 8;
  bool selected_ : 1;
  bool inArena_ : 1;
  bool saysAsAnnotated_ : 1;  // detail kind, annotation kind, place and label are what the annotation says
  bool shown_ : 1;
  InJoin inJoin_ : 2;
  LabelMarks labelMarks_;

  std::string label_;
  PerKind<digestio::SummaryDetail*> details_;  // the results that loaded them own them; null: none
  SummaryData::Impl* owner_;
  CollectionAnnotations collectionAnnotations_;
};

/// The annotation database of the object that an item belongs to; empty if it has none. All that an item needs of
/// its owner, so that items can be built and read without knowing it. Defined with the data object.
[[nodiscard]] const boost::shared_ptr<sitenotes::database_t>& annotationDatabaseOf(const SummaryData::Impl& owner);

}  // namespace kelvar_2_1_7
