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

/// One program seen through its analyses: one item for each source site.
///
/// Built on an annotation database, it holds an item for each living, enabled annotation; each result that is added
/// is joined with them. Items are read through a view: filtered, ordered, and brought up to date by the first read
/// after a change, so that even a read may change the object. Callers serialise all access to one object; two
/// objects that share a database may be used from two threads where that database allows it.
///
/// It owns all it hands out. An item lives until the next addSummaryData that accepts a result; a result, its
/// collection and its details live as long as this object. Nothing here fails of its own: an unreadable result
/// leaves no trace but its missing status. Exceptions of the collaborators and of memory pass through and leave the
/// object usable: what was to be added is not in it, and a view that could not be rebuilt is rebuilt by the next read.
///
/// A `kind` argument is in the range of its enumeration; that is the caller's promise.
class KELVAR_EXPORT SummaryData {
 public:
  class Impl;

  /// Takes up every living, enabled annotation of `database`, which may be empty: then there are no items.
  explicit SummaryData(boost::shared_ptr<sitenotes::database_t> database);
  /// Takes over `impl`, which must not be null.
  explicit SummaryData(Impl* impl);
  ~SummaryData();
  SummaryData(const SummaryData&) = delete;  // items and results point back to their one owner
  SummaryData& operator=(const SummaryData&) = delete;

  /// Loads the analysis result at `path` and joins it with the items. A path with nothing readable behind it adds
  /// nothing; summaryDataStatus tells. Annotations are seen as they were for the first path, readable or not, that the
  /// process-wide scanner's database has or makes a state for; `database` is not looked at.
  /// After an accepted result, item pointers are invalid; results stay.
  void addSummaryData(std::string path, boost::shared_ptr<sitenotes::database_t> database);

  /// How well the latest result that carries `kind` matched as a whole: the match of its worst item. kNotPresent
  /// where none was added.
  [[nodiscard]] SummaryDataStatus summaryDataStatus(digestio::SummaryDataKind kind) const;

  /// Shows or hides what only `kind` speaks for: while any kind is off, an item is shown if a kind that is on has
  /// a detail for it. All are on at first.
  void setSummaryKindEnable(digestio::SummaryDataKind kind, bool enable);
  /// Shows or hides hot spots or loops; for annotated sites, those of `annotationKind` (all of them for
  /// annotation_t::all_kinds). `annotationKind` counts for annotated sites only.
  void setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                  sitenotes::annotation_t::kind_t annotationKind);
  /// Chooses the ordering, and whether the ordered list is turned around as a whole. A value that is no ordering
  /// is kept and sorts by locator.
  void setMapping(SummaryMapping mapping, bool reverse);
  /// Has no effect but that of any setting: the next read rebuilds the view. The options are not read.
  void setSuitabilityProjectOptions(digestio::SuitabilityProjectOptions* options);

  /// How many items the view shows.
  [[nodiscard]] int num_items() const;
  /// The item at `index` of the view, never null. Requires 0 <= index < num_items().
  [[nodiscard]] SummaryItem* item(int index) const;

  /// The database that this object was built on; may be empty.
  [[nodiscard]] boost::shared_ptr<sitenotes::database_t> annotationDatabase();
  /// Always 0: the object keeps no time stamp.
  [[nodiscard]] std::uint64_t timestamp() const;

  /// Program-wide figures over all results; see SummaryResult for how results combine.
  [[nodiscard]] int threading_paradigm();  ///< 0 where unknown, unlike the aggregate, which answers 7
  [[nodiscard]] int num_processors();
  [[nodiscard]] int num_kova_threads();
  [[nodiscard]] int target_system() const;  ///< 0 where unknown
  [[nodiscard]] double programMaxGain();

  /// Whether an item that is not hidden has a detail of the kind. Looks at the list as it stands, and does not bring
  /// the view up to date first.
  [[nodiscard]] bool hasSurveyData();
  [[nodiscard]] bool hasSuitabilityData();
  [[nodiscard]] bool hasCorrectnessData();
  [[nodiscard]] bool hasMAPData();

  /// The results, all of them and by kind, as aggregates. Never null, owned by this object.
  [[nodiscard]] SummaryResult* aggregateResult();
  [[nodiscard]] SummaryResult* surveyResult();
  [[nodiscard]] SummaryResult* suitabilityResult();
  [[nodiscard]] SummaryResult* correctnessResult();
  [[nodiscard]] SummaryResult* mapResult();

  /// The view as fixed-width text with the program-wide figures; with `verbose`, statuses and settings too.
  [[nodiscard]] std::string asString(bool verbose) const;
  /// The same text in pieces, for those who pass it on: whole, that of a million sites takes a quarter of a gigabyte.
  /// A piece is valid while `out` is called with it. `out` may not change this object. What `out` or a collaborator
  /// throws passes through, behind the pieces that were handed on before it.
  void write(bool verbose, const std::function<void(std::string_view piece)>& out) const;

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_2_1_7
