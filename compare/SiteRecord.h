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
/// How the figures of an annotated site match today's annotation, the worst of all analyses.
enum class Match : std::uint8_t { absent, none, approximate, exact };

/// What a site is known by.
struct Identity {
  std::string label;
  toolbelt::path_t file;
  int line = 0;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  Sort sort = Sort::annotated;
  std::uint32_t database = 0;  ///< which annotation database `sequence` is of
  unsigned long sequence = 0;  ///< 0: it has no annotation
  std::uint8_t analyses = 0;   ///< a bit for each that reports it: one function may be a row of each
};

/// What one run says of one site.
struct SiteRecord {
  Identity identity;
  double time = kUnknown;                 ///< seconds with all that runs within
  double gain = kUnknown;                 ///< of the program, as a factor
  std::int64_t races = -1;                ///< -1: nobody looked
  std::array<std::int64_t, 3> strides{};  ///< steps of unit, constant and varying stride
  Vectorised vectorised = Vectorised::unknown;
  Match match = Match::absent;
};

/// What the time of the whole program is a sum of.
enum class WholeOf : std::uint8_t { functions, sites, loops };
inline constexpr std::array kAllWholes{WholeOf::functions, WholeOf::sites, WholeOf::loops};

struct RunRecord {
  std::string name;
  std::uint8_t analyses = 0;                       ///< a bit for each that the run has a result of
  std::array<double, kAllWholes.size()> wholes{};  ///< seconds of the whole program, by source; 0: not timed
  std::vector<SiteRecord> sites;
};

}  // namespace kelvar_compare
