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

/// Where an annotated site lies among the others.
struct Region {
  unsigned long outer = 0;  ///< the handle of the innermost site around it; 0: none
  int depth = 0;            ///< how many are around it
  int lastLine = 0;         ///< of the region, from its end annotation; 0: it has none
  double nested = 0;        ///< seconds of the sites directly within
};

/// What the times of a project count. A survey by instructions and an experiment by the clock are not one measure.
struct TimeUnits {
  TimeUnit survey = {};  ///< also of loops, and of the whole program
  TimeUnit suitability = {};

  /// Of `Site::time`, which is that of the suitability analysis only where no other has one.
  [[nodiscard]] const TimeUnit& of(const Site& site) const noexcept {
    return site.surveyTime || site.vectorised ? survey : suitability;
  }
};

/// What the time of the whole program is a sum of.
enum class WholeOf : std::uint8_t { functions, sites, loops };
inline constexpr std::array kAllWholes{WholeOf::functions, WholeOf::sites, WholeOf::loops};

/// The program as a whole: what every site is a share of, and which site lies in which.
class Overview {
 public:
  /// Visits every row of the view once; hands each on to `look`, which may be empty.
  explicit Overview(const kelvar::SummaryData& data, const std::function<void(const Site&)>& look = {});

  /// Seconds of the whole program: of all functions, else of all outermost sites, else of all loops, whichever says
  /// most. 0 where nothing was timed.
  [[nodiscard]] double wholeTime() const noexcept { return whole_; }
  /// The same from one source alone, so that two runs can be compared by the same one. Sites: the outermost.
  [[nodiscard]] double wholeTime(WholeOf source) const noexcept { return wholes_[static_cast<std::size_t>(source)]; }
  /// Whether any living annotation is there: without one, nothing can match.
  [[nodiscard]] bool anyCurrent() const noexcept { return anyCurrent_; }
  [[nodiscard]] std::int64_t rows() const noexcept { return rows_; }
  /// Whether a row is an annotated site of this kind.
  [[nodiscard]] bool has(sitenotes::annotation_t::kind_t kind) const noexcept {
    return kinds_[static_cast<std::size_t>(kind)];
  }

  /// The rows that are at a place of the file now, in the order of the first walk. Valid as long as the data takes no
  /// further result. Analyses spell one file in several ways: `src/a.cpp`, `./src/a.cpp` and, where no other file ends
  /// so, `/home/me/src/a.cpp` are one.
  [[nodiscard]] const std::vector<kelvar::SummaryItem*>& rowsIn(const std::string& file) const noexcept;
  /// The row of the site whose key is `s` and its sequence; null where there is none.
  [[nodiscard]] kelvar::SummaryItem* itemOf(const std::string& key) const noexcept;
  /// Every file that a row is in.
  [[nodiscard]] const std::map<std::string, std::vector<kelvar::SummaryItem*>>& files() const noexcept {
    return files_;
  }

  /// The one spelling of a path that a row has; the path itself where no row has it.
  [[nodiscard]] const std::string& spellingOf(const std::string& path) const noexcept;

  /// The region that the site is in; a site without an annotation has a region of its own.
  [[nodiscard]] const Region& regionOf(const Site& site) const noexcept;
  /// The site's time in parts of the whole; nothing where either is unknown.
  [[nodiscard]] std::optional<double> shareOf(const Site& site) const noexcept;
  /// Seconds without what lies within; nothing where that is unknown.
  [[nodiscard]] std::optional<double> ownTimeOf(const Site& site) const noexcept;

 private:
  struct Mark;
  using BySpelling = std::map<std::string_view, std::vector<kelvar::SummaryItem*>>;  // of paths, which are never freed
  void nest(std::vector<Mark>& marks);
  void uniteFiles(BySpelling&& bySpelling);

  std::unordered_map<unsigned long, Region> regions_;  // by handle; only what is in or around another or has an end
  std::map<std::string, std::vector<kelvar::SummaryItem*>> files_;  // by their one spelling
  std::unordered_map<std::string, std::string> spellings_;          // as rows have it, to that
  std::unordered_map<unsigned long, kelvar::SummaryItem*> sites_;   // by handle
  std::array<double, kAllWholes.size()> wholes_{};
  double whole_ = 0;
  std::int64_t rows_ = 0;
  bool anyCurrent_ = false;
  std::array<bool, sitenotes::annotation_t::all_kinds> kinds_{};
};

}  // namespace kelvar_page
