#pragma once

#include <cstddef>
#include <vector>

namespace kelvar_compare {

/// The fewest values on each side for which a rank test is useful.
inline constexpr std::size_t kLeastRuns = 3;

/// The two-sided p of the rank-sum test (Wilcoxon 1945; Mann and Whitney 1947): how often a random split of all values
/// into two sides of these sizes has a rank sum as far from its mean as this one. Exact: every split counts, and equal
/// values share the mean of their ranks (Hollander, Wolfe and Chicken, "Nonparametric Statistical Methods", 4.1).
/// With more than 40 values it is the normal approximation of that, corrected for continuity and ties. 1 if a side is
/// empty. No value may be NaN.
[[nodiscard]] double rankTest(const std::vector<double>& before, const std::vector<double>& after);

/// The smallest p that two sides of these sizes can have.
[[nodiscard]] double smallestP(std::size_t before, std::size_t after);

/// The greatest p at which a difference is called: 0.05, or smallestP() if that is greater.
[[nodiscard]] double levelFor(std::size_t before, std::size_t after);

/// The same for a family of sites that are judged together: 0.025, so that one in 40 comparisons of a program with
/// itself calls a site.
[[nodiscard]] double familyLevelFor(std::size_t before, std::size_t after);

/// The number of ways to split `before` + `after` runs into sides of these sizes; `most` + 1 if there are more than
/// `most`.
[[nodiscard]] std::size_t splitsOf(std::size_t before, std::size_t after, std::size_t most);

}  // namespace kelvar_compare
