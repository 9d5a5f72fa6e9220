#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "sitenotes.h"

namespace kelvar_compare {

inline constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

enum class Sort : std::uint8_t { annotated, function, loop };
enum class Vectorised : std::int8_t { unknown = -1, no, partly, yes };
/// How well the figures of an annotated site match its present annotation: the worst of all analyses.
enum class Match : std::uint8_t { absent, none, approximate, exact };

/// The data by which a site is recognised in another run.
struct Identity {
  std::string label;
  toolbelt::path_t file;
  int line = 0;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  Sort sort = Sort::annotated;
  std::uint32_t database = 0;  ///< the annotation database of `sequence`
  unsigned long sequence = 0;  ///< 0: no annotation
  std::uint8_t analyses = 0;   ///< a bit for each analysis that reports it: a function may have a row for each
};

/// The data of one site in one run.
struct SiteRecord {
  Identity identity;
  double time = kUnknown;                 ///< inclusive seconds
  double gain = kUnknown;                 ///< of the program, as a factor
  std::int64_t races = -1;                ///< -1: no analysis looked for races
  std::array<std::int64_t, 3> strides{};  ///< steps of unit, constant and varying stride
  Vectorised vectorised = Vectorised::unknown;
  Match match = Match::absent;
};

/// The rows whose times add up to the time of the whole program.
enum class WholeOf : std::uint8_t { functions, sites, loops };
inline constexpr std::array kAllWholes{WholeOf::functions, WholeOf::sites, WholeOf::loops};

struct RunRecord {
  std::string name;
  std::uint8_t analyses = 0;                       ///< a bit for each analysis with a result
  std::array<double, kAllWholes.size()> wholes{};  ///< seconds of the whole program, by WholeOf; 0: not timed
  std::vector<SiteRecord> sites;
};

}  // namespace kelvar_compare
