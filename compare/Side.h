#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Pairing.h"
#include "SiteRecord.h"

namespace kelvar_compare {

/// A site with the data of all runs of one side.
struct SideSite {
  Identity identity;                          ///< of the last run that has the site
  std::uint32_t runs = 0;                     ///< the number of runs that have it
  std::array<std::uint32_t, 3> vectorised{};  ///< the numbers of runs that say no, partly, yes
  std::array<std::int64_t, 3> strides{};      ///< the sums of all runs
  std::int64_t races = -1;                    ///< the most of any run; -1: no run looked for races
  Match match = Match::absent;                ///< the worst of all runs
};

/// Repeated runs of one measurement: the sites that any run has, and their times in each run.
class Side {
 public:
  /// Pairs the run's sites with those of earlier runs; the others are added. Two sites of one run are never the same.
  void add(RunRecord run, const AnchorsOf& anchorsOf);

  [[nodiscard]] const std::vector<SideSite>& sites() const noexcept { return sites_; }
  [[nodiscard]] std::size_t runs() const noexcept { return names_.size(); }
  [[nodiscard]] const std::vector<std::string>& names() const noexcept { return names_; }

  /// The number of runs that timed the program or any site.
  [[nodiscard]] std::size_t timedRuns() const;
  /// A bit for each analysis of which any run has a result.
  [[nodiscard]] std::uint8_t analyses() const noexcept { return analyses_; }
  /// Seconds of the whole program, by run, from `source` or else from the greatest source of each run; NaN for a run
  /// without times.
  [[nodiscard]] std::vector<double> wholes(std::optional<WholeOf> source) const;
  /// Seconds of a site, by run; NaN for a run that did not time it.
  [[nodiscard]] std::vector<double> times(std::size_t site) const { return valuesOf(times_, site); }
  /// The median of the gains; NaN if there are none.
  [[nodiscard]] double gain(std::size_t site) const;
  /// What most runs say; on a tie, the lesser.
  [[nodiscard]] Vectorised vectorised(std::size_t site) const;
  /// 0 unit, 1 constant, 2 varying. If a quarter of the steps or more are not of unit stride, it is the more frequent
  /// of the other two; else unit. -1 when no access was seen.
  [[nodiscard]] int stride(std::size_t site) const;
  /// The part of all steps that have this stride; NaN when no access was seen.
  [[nodiscard]] double strideShare(std::size_t site) const;

 private:
  using Values = std::vector<std::vector<double>>;  // by run and site; earlier runs lack the sites added later

  static std::vector<double> valuesOf(const Values& values, std::size_t site);
  std::size_t place(SiteRecord&& record, std::size_t known);

  std::vector<SideSite> sites_;
  std::vector<std::string> names_;
  std::uint8_t analyses_ = 0;
  std::vector<std::array<double, kAllWholes.size()>> wholes_;  // by run
  Values times_;
  Values gains_;
};

/// The median of the values that are not NaN; NaN if there are none.
[[nodiscard]] double median(std::vector<double> values);

}  // namespace kelvar_compare
