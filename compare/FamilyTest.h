#pragma once

#include <cstddef>
#include <vector>

namespace kelvar_compare {

/// The times of sites that are judged together: one row for each site and one column for each run, those of BEFORE
/// first. NaN when a run did not time the site.
struct Family {
  std::size_t before = 0;
  std::size_t after = 0;
  std::vector<std::vector<double>> seconds;
};

struct SiteVerdict {
  double p = 1;        ///< of the rank test of this site alone
  double familyP = 1;  ///< how often chance makes any site of the family differ as clearly as this one
  double level = 0;    ///< the greatest p that counts, for the number of runs that timed the site
  double apart = 0;    ///< AFTER / BEFORE - 1, without what all sites have in common
  double change = 0;   ///< AFTER / BEFORE - 1 of the measured medians; NaN when BEFORE's is unknown or 0
};

/// Whether the site is called slower or faster: both tests say that it is more than noise, and the measured change is
/// at least `threshold` (0.05: 5 %) and in the same direction as `apart`.
[[nodiscard]] bool isCall(const SiteVerdict& verdict, const Family& family, double threshold);

/// Judges each site. Of many sites, some differ by chance, and with five runs a side no correction of single p-values
/// leaves any to call: the smallest is 2/252. So the runs are split anew in every way, all sites at once, and of each
/// split the clearest difference of any site is kept (the max-T of Westfall and Young, "Resampling-Based Multiple
/// Testing", 1993): exact for any number of sites, however they depend on each other. Of more than 10,000 splits, that
/// many are drawn, always the same ones.
[[nodiscard]] std::vector<SiteVerdict> judge(const Family& family);

}  // namespace kelvar_compare
