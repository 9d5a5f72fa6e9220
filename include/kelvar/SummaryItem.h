#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "digestio.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// One source site of the program: its annotation, its place, and what each analysis reports for it.
///
/// Items belong to the SummaryData that they come from, and live until its next addSummaryData that adds a result, or
/// as long as it does. Settings and rebuilds of the view keep them. The details that an item points to belong to the
/// loaded results and live as long as the SummaryData. A `kind` argument must be 0 to 4; it is not checked.
/// No operation reports errors; exceptions of the annotation database and of the details pass through.
///
/// Label, locator and annotation kind are those that were read when a result was last added, or at the construction of
/// the SummaryData. They do not follow an annotation that is edited later.
class KELVAR_EXPORT SummaryItem {
 public:
  /// Annotated site, hot spot or loop. Every item with an annotation is an annotated site.
  [[nodiscard]] virtual digestio::SummaryDetailKind detailKind() const = 0;
  /// The kind of the site's annotation, or the kind that the analysis reported if the site has none.
  [[nodiscard]] virtual sitenotes::annotation_t::kind_t annotationKind() const = 0;
  /// The site's position; the null locator if it has none. See getCurrentLocator for where the site is now.
  [[nodiscard]] virtual sitenotes::locator_t locator() const = 0;
  [[nodiscard]] virtual std::string label() const = 0;
  /// Empty for a site that has no annotation, only analysis data.
  [[nodiscard]] virtual boost::shared_ptr<sitenotes::annotation_t> annotation() const = 0;
  /// The site's id in the annotation database, which edits do not change; 0 if it has none.
  [[nodiscard]] virtual unsigned long handle() const = 0;

  /// kCurrent for a site that is annotated today, kNoMatchCurrent for one that only results know.
  [[nodiscard]] virtual SummaryDataStatus summaryDataStatus() const = 0;
  /// How the data of `kind` matches today's annotation; kNotPresent if there is no data of the kind for the site.
  [[nodiscard]] virtual SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const = 0;
  /// 1 if there is data of `kind` for the site, else 0. May be 1 without a detail: for a site that was annotated when a
  /// result of the kind was collected and is not annotated today, and that the analysis did not report.
  [[nodiscard]] virtual unsigned int summaryDataCount(digestio::SummaryDataKind kind) const = 0;
  /// What the analysis reports for the site; null if nothing.
  [[nodiscard]] virtual digestio::SummaryDetail* summaryDetail(digestio::SummaryDataKind kind) const = 0;

  /// The view of that detail; null if there is no detail, or if the detail offers no such view.
  [[nodiscard]] virtual digestio::SurveyDetail* surveyDetail() const = 0;
  [[nodiscard]] virtual digestio::SurveyVectorizationDetail* surveyVectorizationDetail() const = 0;
  [[nodiscard]] virtual digestio::SuitabilityDetail* suitabilityDetail() const = 0;
  [[nodiscard]] virtual digestio::CorrectnessDetail* correctnessDetail() const = 0;
  [[nodiscard]] virtual digestio::MapDetail* mapDetail() const = 0;

  /// The annotation that was given along with the detail of `kind`. Empty without a detail, for both survey kinds, and
  /// for all details of loaded results, which report a position and a label only.
  [[nodiscard]] virtual boost::shared_ptr<sitenotes::annotation_t> collectionAnnotation(
      digestio::SummaryDataKind kind) const = 0;

  /// The user's selection mark. Kept when results are added; does not affect order or filters.
  virtual void setSelected(bool selected) = 0;
  [[nodiscard]] virtual bool isSelected() const = 0;

  /// Where the site is now: at the newest annotation in the database, else at annotation(), else at locator(). Asks the
  /// database at every call. `handle` becomes handle() if the item has an annotation, else 0. False, with a null `out`,
  /// if none of them has a position.
  virtual bool getCurrentLocator(sitenotes::locator_t& out, unsigned long& handle) = 0;
  /// Where the analysis saw the site. False, with a null `out`, if it reports nothing for the site or no position.
  /// `handle` becomes handle() if the item has an annotation, else 0.
  virtual bool getCollectionLocator(digestio::SummaryDataKind kind, sitenotes::locator_t& out,
                                    unsigned long& handle) = 0;

 protected:
  ~SummaryItem() = default;  // callers never delete an item
};

}  // namespace kelvar_2_1_7
