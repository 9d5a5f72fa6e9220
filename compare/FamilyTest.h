#pragma once

#include <cstddef>
#include <vector>

namespace kelvar_compare {

/// The times of sites that are judged together: a row a site, a column a run, those of BEFORE first. NaN where a run
/// did not time the site.
struct Family {
  std::size_t before = 0;
  std::size_t after = 0;
  std::vector<std::vector<double>> seconds;
};

struct SiteVerdict {
  double p = 1;        ///< of the rank test of this site alone
  double familyP = 1;  ///< how often chance makes any site of the family differ as clearly as this one
  double level = 0;    ///< below which p counts, as many runs as timed the site
  double apart = 0;    ///< AFTER over BEFORE less 1, without what all sites have in common
  double change = 0;   ///< the same of the medians as they were measured; NaN where BEFORE has none or 0
};

/// Whether the site is slower or faster: more than noise by both tests, and by `threshold` or more (0.05: 5 %) as it
/// was measured, in the direction that is left without what all sites have in common.
[[nodiscard]] bool isCall(const SiteVerdict& verdict, const Family& family, double threshold);

/// Judges each site. Of many sites, some differ by chance, and with five runs a side no correction of single p-values
/// leaves any to call: the smallest is 2/252. So the runs are split anew in every way, all sites at once, and of each
/// split the clearest difference of any site is kept (the max-T of Westfall and Young, "Resampling-Based Multiple
/// Testing", 1993): exact for any number of sites, however they depend on each other. Of more than 10,000 splits, that
/// many are drawn, always the same ones.
[[nodiscard]] std::vector<SiteVerdict> judge(const Family& family);

}  // namespace kelvar_compare
