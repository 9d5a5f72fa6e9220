#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "digestio.h"
#include "kelvar/SummaryItem.h"
#include "kelvar/SummaryResult.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The annotations of a program joined with the results of its analyses: one item for each source site.
///
/// Built on an annotation database, it has an item for each living, enabled annotation; the items of each added result
/// are joined with them. Items are read through a view, which is filtered and sorted. Every setter and every added
/// result makes the view stale, and the next read rebuilds it, so even a read may change the object. Callers serialise
/// all access to one object. Two objects that share a database may be used from two threads where that database allows
/// it.
///
/// The object owns everything that it returns a pointer to. Results, their collections and details live as long as this
/// object; see SummaryItem for how long an item lives. The library has no errors of its own: a result that cannot be
/// read is dropped silently. Exceptions of the collaborators and std::bad_alloc pass through and leave the object
/// usable: the result is not added, and a view that could not be rebuilt is rebuilt by the next read.
///
/// A `kind` argument must be in the range of its enumeration; it is not checked.
class KELVAR_EXPORT SummaryData {
 public:
  class Impl;

  /// Makes an item for each living, enabled annotation of `database`. If `database` is empty, there are no items.
  explicit SummaryData(boost::shared_ptr<sitenotes::database_t> database);
  /// Takes ownership of `impl`, which must not be null.
  explicit SummaryData(Impl* impl);
  ~SummaryData();
  SummaryData(const SummaryData&) = delete;  // items and results point back to their one owner
  SummaryData& operator=(const SummaryData&) = delete;

  /// Loads the analysis result at `path` and joins its items with those of this object. If it cannot be loaded, nothing
  /// is added, and no status changes. `database` is ignored.
  ///
  /// Items that the filters hid at the last read take no part: a site that is hidden then and is in the result becomes
  /// a second item. Add results before you set filters.
  ///
  /// The first state of the annotations that the process-wide scanner's database has or makes for a path is used for
  /// this and all later results. Until there is one, each add asks for it before it loads the result, also with an
  /// empty path. So an add that adds nothing or throws may already have fixed the state for the later ones.
  void addSummaryData(std::string path, boost::shared_ptr<sitenotes::database_t> database);

  /// How well the latest result that has data of `kind` matched, of all kinds that it has: the match of its worst item,
  /// from kNoMatchCurrent to kExactMatchCurrent. kExactMatchCurrent for a result without items; kNotPresent if there is
  /// no such result.
  [[nodiscard]] SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const;

  /// Enables or disables a kind; all are enabled at first. While any kind is disabled, the view shows only items for
  /// which an enabled kind has a detail.
  void setSummaryKindEnable(digestio::SummaryDataKind kind, bool enable);
  /// Shows or hides the items of `detailKind`. For annotated sites, only those of `annotationKind`, or all of them for
  /// annotation_t::all_kinds; for hot spots and loops, `annotationKind` is ignored.
  void setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                  sitenotes::annotation_t::kind_t annotationKind);
  /// Sets the ordering, and whether the sorted list is reversed as a whole. A value that is not an ordering sorts by
  /// locator.
  void setMapping(SummaryMapping mapping, bool reverse);
  /// Makes the view stale, so that the next read filters and sorts anew. `options` is not read and may be null.
  void setSuitabilityProjectOptions(digestio::SuitabilityProjectOptions* options);

  /// The number of items in the view.
  [[nodiscard]] int num_items() const;
  /// The item at `index` of the view, not null. Requires 0 <= index < num_items().
  [[nodiscard]] SummaryItem* item(int index) const;

  /// The database that this object was built on; may be empty.
  [[nodiscard]] boost::shared_ptr<sitenotes::database_t> annotationDatabase();
  /// Always 0: the object keeps no time stamp.
  [[nodiscard]] std::uint64_t timestamp() const;

  /// Program-wide values over all results; see SummaryResult for how results are combined.
  [[nodiscard]] int threading_paradigm();  ///< 0 if unknown, where aggregateResult() answers 7
  [[nodiscard]] int num_processors();
  [[nodiscard]] int num_kova_threads();
  [[nodiscard]] int target_system() const;  ///< 0 if unknown
  [[nodiscard]] double programMaxGain();

  /// Whether an item that is not hidden has a detail of the kind. Reads the items as the last rebuild left them, and
  /// does not rebuild a stale view.
  [[nodiscard]] bool hasSurveyData();
  [[nodiscard]] bool hasSuitabilityData();
  [[nodiscard]] bool hasCorrectnessData();
  [[nodiscard]] bool hasMAPData();

  /// Aggregates: over all results, and over those that have data of one kind. Not null; owned by this object.
  [[nodiscard]] SummaryResult* aggregateResult();
  [[nodiscard]] SummaryResult* surveyResult();
  [[nodiscard]] SummaryResult* suitabilityResult();
  [[nodiscard]] SummaryResult* correctnessResult();
  [[nodiscard]] SummaryResult* mapResult();

  /// The view as fixed-width text, then the program-wide values; with `verbose`, also statuses and settings.
  [[nodiscard]] std::string asString(bool verbose) const;
  /// The same text in pieces, for callers that pass it on: that of a million sites takes 250 MB. A piece is valid
  /// during the call of `out`, which must not change this object. Exceptions of `out` and of the collaborators pass
  /// through; the pieces before them have been passed to `out`.
  void write(bool verbose, const std::function<void(std::string_view piece)>& out) const;

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_2_1_7
