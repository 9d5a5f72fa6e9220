#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "PerKind.h"
#include "kelvar/SummaryItem.h"
#include "sitenotes.h"

namespace kelvar_page {

/// What a row is: an annotated site, or a function or loop that only an analysis reported.
enum class SiteSort { annotated, function, loop };

enum class Vectorised { no, yes, partly };

/// A copy of one row's data, which stays valid while the view changes. A figure that no analysis gives is empty.
struct Site {
  SiteSort sort = SiteSort::annotated;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  unsigned long handle = 0;              ///< the site's sequence; 0 without an annotation
  bool current = false;                  ///< whether it has a living annotation
  sitenotes::locator_t place{{}, 0, 0};  ///< where it is now, else where it was last seen
  kelvar_2_1_7::PerKind<kelvar::SummaryDataStatus> match{};
  kelvar_2_1_7::PerKind<std::optional<sitenotes::locator_t>> seen{};

  std::optional<double> time;  ///< inclusive, in the unit of TimeUnits::of
  std::optional<double> own;   ///< exclusive, if an analysis gives it
  std::optional<Vectorised> vectorised;
  std::optional<double> gain;      ///< of the program, as a factor
  std::optional<double> siteGain;  ///< of the site alone, as a factor
  int cores = 0;                   ///< that the gains assume
  std::optional<std::int64_t> races;
  std::int64_t lockOrders = 0;
  std::int64_t otherFindings = 0;
  std::optional<std::array<std::int64_t, 3>> strides;  ///< steps of unit, constant and varying stride
  std::optional<double> surveyTime;                    ///< by the survey
  std::optional<double> suitabilityTime;               ///< by the suitability analysis
  /// The detail of each analysis, by which evidence is found; null if it does not report the site.
  kelvar_2_1_7::PerKind<const digestio::SummaryDetail*> details{};
};

/// Copies the item's data, and looks up its present place in the annotation database.
[[nodiscard]] Site siteOf(kelvar::SummaryItem& item);

/// `parallel`, `function`, `loop`.
[[nodiscard]] std::string kindName(const Site& site);
/// Whether it is an end annotation; these are not shown as rows.
[[nodiscard]] bool isEnd(const Site& site) noexcept;
/// `pixels.cpp:48`, without folders; `?` when no place is known.
[[nodiscard]] std::string shortPlace(const sitenotes::locator_t& place);
/// `sample/pixels.cpp:48`.
[[nodiscard]] std::string placeText(const sitenotes::locator_t& place);
/// A key of the row that stays the same after a reload: its sequence, else kind, place and label.
[[nodiscard]] std::string keyOf(const Site& site);
/// The name of an analysis in sentences.
[[nodiscard]] const char* analysisName(digestio::SummaryDataKind kind) noexcept;

/// The stride to show. If a quarter of the steps or more are not of unit stride, the more frequent of the other two;
/// else unit.
struct StrideShare {
  int sort = 0;      ///< 0 unit, 1 constant, 2 varying
  double share = 0;  ///< of all steps
};
[[nodiscard]] std::optional<StrideShare> strideOf(const Site& site) noexcept;
[[nodiscard]] const char* strideName(int sort) noexcept;

}  // namespace kelvar_page
