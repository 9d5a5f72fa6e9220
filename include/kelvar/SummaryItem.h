#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "digestio.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// One source site of the program: who it is, where it is, and what each analysis says of it.
///
/// Items belong to the SummaryData that hands them out and live until its next addSummaryData, or as long as it
/// does; a change of settings moves them but keeps them. The details that an item points to belong to the loaded
/// results and live as long as the SummaryData. A `kind` argument is 0 to 4, and that is the caller's promise.
/// No operation reports errors; exceptions of the annotation database and of the details pass through.
class KELVAR_EXPORT SummaryItem {
 public:
  /// Annotated site, hot spot or loop; an annotated site for every item that comes from an annotation.
  [[nodiscard]] virtual digestio::SummaryDetailKind detailKind() const = 0;
  /// The kind of the site's annotation; without one, the kind that the analysis reported.
  [[nodiscard]] virtual sitenotes::annotation_t::kind_t annotationKind() const = 0;
  /// The place that the item itself keeps; null if it has none. See getCurrentLocator for where the site is now.
  [[nodiscard]] virtual sitenotes::locator_t locator() const = 0;
  [[nodiscard]] virtual std::string label() const = 0;
  /// Empty for a site that only an analysis knows.
  [[nodiscard]] virtual boost::shared_ptr<sitenotes::annotation_t> annotation() const = 0;
  /// The site's number in the annotation database, the same across edits; 0 if it has none.
  [[nodiscard]] virtual unsigned long handle() const = 0;

  /// kCurrent where a current annotation stands behind the item, kNoMatchCurrent where only analyses do.
  [[nodiscard]] virtual SummaryDataStatus summaryDataStatus() const = 0;
  /// How the analysis' view of the site matches today's annotation; kNotPresent if it knows nothing of the site.
  [[nodiscard]] virtual SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const = 0;
  /// How many entries of the analysis stand behind the site: 1 or, where there are none, 0.
  [[nodiscard]] virtual unsigned int summaryDataCount(digestio::SummaryDataKind kind) const = 0;
  /// What the analysis says of the site; null if nothing.
  [[nodiscard]] virtual digestio::SummaryDetail* summaryDetail(digestio::SummaryDataKind kind) const = 0;

  /// What the analysis says of the site, typed; null if it says nothing or the detail has no such record.
  [[nodiscard]] virtual digestio::SurveyDetail* surveyDetail() const = 0;
  [[nodiscard]] virtual digestio::SurveyVectorizationDetail* surveyVectorizationDetail() const = 0;
  [[nodiscard]] virtual digestio::SuitabilityDetail* suitabilityDetail() const = 0;
  [[nodiscard]] virtual digestio::CorrectnessDetail* correctnessDetail() const = 0;
  [[nodiscard]] virtual digestio::MapDetail* mapDetail() const = 0;

  /// The annotation that the site had when the analysis' data was joined; empty if none was recorded.
  [[nodiscard]] virtual boost::shared_ptr<sitenotes::annotation_t> collectionAnnotation(
      digestio::SummaryDataKind kind) const = 0;

  /// A mark of the user's, carried along by joins. Changes no order and no filter.
  virtual void setSelected(bool selected) = 0;
  [[nodiscard]] virtual bool isSelected() const = 0;

  /// Where the site is now: the newest annotation of the database, else the item's own annotation, else locator().
  /// `handle` becomes the item's handle where it has an annotation, else 0. Returns whether `out` names a place;
  /// where not, `out` is null. Asks the database at every call.
  virtual bool getCurrentLocator(sitenotes::locator_t& out, unsigned long& handle) = 0;
  /// Where the analysis saw the site; `out` is null and the answer false where it says nothing of the site.
  /// `handle` becomes the item's handle where it has an annotation, else 0.
  virtual bool getCollectionLocator(digestio::SummaryDataKind kind, sitenotes::locator_t& out,
                                    unsigned long& handle) = 0;

 protected:
  ~SummaryItem() = default;  // items are never deleted by their users
};

}  // namespace kelvar_2_1_7
