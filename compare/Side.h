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

/// A site as the runs of one side tell of it.
struct SideSite {
  Identity identity;  ///< as the last run that has it says
  std::uint32_t runs = 0;
  std::array<std::uint32_t, 3> vectorised{};  ///< how many runs say no, partly, yes
  std::array<std::int64_t, 3> strides{};      ///< of all runs
  std::int64_t races = -1;                    ///< the most of any run; -1: none looked
  Match match = Match::absent;                ///< the worst of all runs
};

/// Repeats of one measurement: the sites that any of them has, and the times that each gave them.
class Side {
 public:
  /// Finds the run's sites among those that are there; the others are new. The first run's sites are all its own.
  void add(RunRecord run, const AnchorsOf& anchorsOf);

  [[nodiscard]] const std::vector<SideSite>& sites() const noexcept { return sites_; }
  [[nodiscard]] std::size_t runs() const noexcept { return names_.size(); }
  [[nodiscard]] const std::vector<std::string>& names() const noexcept { return names_; }

  /// How many runs timed the program or any site.
  [[nodiscard]] std::size_t timedRuns() const;
  /// A bit for each analysis that any run has a result of.
  [[nodiscard]] std::uint8_t analyses() const noexcept { return analyses_; }
  /// Seconds of the whole program, by run, from one source or from that which says most; NaN where nothing was timed.
  [[nodiscard]] std::vector<double> wholes(std::optional<WholeOf> source) const;
  /// Seconds of a site, by run; NaN where a run did not time it.
  [[nodiscard]] std::vector<double> times(std::size_t site) const { return valuesOf(times_, site); }
  /// The median of the gains; NaN where there are none.
  [[nodiscard]] double gain(std::size_t site) const;
  /// What most runs say; of as many, the lesser.
  [[nodiscard]] Vectorised vectorised(std::size_t site) const;
  /// 0 unit, 1 constant, 2 varying: the commoner of the two that are not unit, from a quarter of all steps on. -1 where
  /// no access was seen.
  [[nodiscard]] int stride(std::size_t site) const;
  /// The part of all steps that have this sort of stride; NaN where no access was seen.
  [[nodiscard]] double strideShare(std::size_t site) const;

 private:
  using Values = std::vector<std::vector<double>>;  // by run; a shorter one lacks the sites that came later

  static std::vector<double> valuesOf(const Values& values, std::size_t site);
  std::size_t place(SiteRecord&& record, std::size_t known);

  std::vector<SideSite> sites_;
  std::vector<std::string> names_;
  std::uint8_t analyses_ = 0;
  std::vector<std::array<double, kAllWholes.size()>> wholes_;  // by run
  Values times_;
  Values gains_;
};

/// The median, NaN values left out; NaN if there are no others.
[[nodiscard]] double median(std::vector<double> values);

}  // namespace kelvar_compare
