#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Figures.h"
#include "Site.h"
#include "kelvar/SummaryData.h"

namespace kelvar_page {

/// The region of an annotated site, and how it is nested.
struct Region {
  unsigned long outer = 0;  ///< the handle of the innermost site around it; 0: none
  int depth = 0;            ///< the number of sites around it
  int lastLine = 0;         ///< the line of its end annotation; 0: none
  double nested = 0;        ///< seconds of the sites directly inside
};

/// The units of the times of a project: a survey may count instructions while a suitability experiment counts seconds.
struct TimeUnits {
  TimeUnit survey = {};  ///< also of loops, and of the whole program
  TimeUnit suitability = {};

  /// The unit of `Site::time`, which comes from the suitability analysis only if no other analysis has a time.
  [[nodiscard]] const TimeUnit& of(const Site& site) const noexcept {
    return site.surveyTime || site.vectorised ? survey : suitability;
  }
};

/// The rows whose times add up to the time of the whole program.
enum class WholeOf : std::uint8_t { functions, sites, loops };
inline constexpr std::array kAllWholes{WholeOf::functions, WholeOf::sites, WholeOf::loops};

/// The program as a whole: its time, the nesting of its sites, and its rows by file.
class Overview {
 public:
  /// Visits every row of the view once, and calls `look` with it unless that is empty.
  explicit Overview(const kelvar::SummaryData& data, const std::function<void(const Site&)>& look = {});

  /// The time of the whole program: the greatest sum among functions, outermost sites and loops. 0 when nothing was
  /// timed.
  [[nodiscard]] double wholeTime() const noexcept { return whole_; }
  /// The sum of one kind of rows, so that two runs can be compared by the same kind. Of sites, only the outermost
  /// count.
  [[nodiscard]] double wholeTime(WholeOf source) const noexcept { return wholes_[static_cast<std::size_t>(source)]; }
  /// Whether there is any living annotation: without one, nothing can match.
  [[nodiscard]] bool anyCurrent() const noexcept { return anyCurrent_; }
  [[nodiscard]] std::int64_t rows() const noexcept { return rows_; }
  /// Whether a row is an annotated site of this kind.
  [[nodiscard]] bool has(sitenotes::annotation_t::kind_t kind) const noexcept {
    return kinds_[static_cast<std::size_t>(kind)];
  }

  /// The rows that are in the file now, in the order of the view at construction. Valid until the data takes another
  /// result. Analyses spell a file in several ways: `src/a.cpp`, `./src/a.cpp` and, unless it is ambiguous,
  /// `/home/me/src/a.cpp` are the same file.
  [[nodiscard]] const std::vector<kelvar::SummaryItem*>& rowsIn(const std::string& file) const noexcept;
  /// The row of the site with this key, `s` and its sequence; null when there is none.
  [[nodiscard]] kelvar::SummaryItem* itemOf(const std::string& key) const noexcept;
  /// All files with rows.
  [[nodiscard]] const std::map<std::string, std::vector<kelvar::SummaryItem*>>& files() const noexcept {
    return files_;
  }

  /// The one spelling of a path that a row has; the path itself where no row has it.
  [[nodiscard]] const std::string& spellingOf(const std::string& path) const noexcept;

  /// The site's region; an empty one for a site without an annotation.
  [[nodiscard]] const Region& regionOf(const Site& site) const noexcept;
  /// The site's part of the whole program's time, from 0 to 1; nothing when either time is unknown.
  [[nodiscard]] std::optional<double> shareOf(const Site& site) const noexcept;
  /// The site's time without the sites inside it; nothing when unknown.
  [[nodiscard]] std::optional<double> ownTimeOf(const Site& site) const noexcept;

 private:
  struct Mark;
  using BySpelling = std::map<std::string_view, std::vector<kelvar::SummaryItem*>>;  // of paths, which are never freed
  /// Sorts the marks by place and finds the regions.
  void nest(std::vector<Mark>& marks);
  static void closeRegions(std::vector<Mark>& marks);
  void nestRegions(const std::vector<Mark>& marks);
  void uniteFiles(BySpelling&& bySpelling);

  std::unordered_map<unsigned long, Region> regions_;  // by handle; only nested regions and those with an end
  std::map<std::string, std::vector<kelvar::SummaryItem*>> files_;  // by united spelling
  std::unordered_map<std::string, std::string> spellings_;          // the united spelling by that of rows
  std::unordered_map<unsigned long, kelvar::SummaryItem*> sites_;   // by handle
  std::array<double, kAllWholes.size()> wholes_{};
  double whole_ = 0;
  std::int64_t rows_ = 0;
  bool anyCurrent_ = false;
  std::array<bool, sitenotes::annotation_t::all_kinds> kinds_{};
};

}  // namespace kelvar_page
