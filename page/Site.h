#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "PerKind.h"
#include "kelvar/SummaryItem.h"
#include "sitenotes.h"

namespace kelvar_page {

/// Where a row comes from: an annotation, or only an analysis.
enum class SiteSort { annotated, function, loop };

enum class Vectorised { no, yes, partly };

/// One row as people read it: every figure in its unit, and nothing where no analysis says anything. A copy: it stays
/// what it is while the view changes.
struct Site {
  SiteSort sort = SiteSort::annotated;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  unsigned long handle = 0;              ///< the site's sequence; 0 without an annotation
  bool current = false;                  ///< it has a living annotation
  sitenotes::locator_t place{{}, 0, 0};  ///< where it is now, else where it was last seen
  kelvar_2_1_7::PerKind<kelvar::SummaryDataStatus> match{};
  kelvar_2_1_7::PerKind<std::optional<sitenotes::locator_t>> seen{};

  std::optional<double> time;  ///< seconds with all that runs within
  std::optional<double> own;   ///< seconds without it, where an analysis tells
  std::optional<Vectorised> vectorised;
  std::optional<double> gain;      ///< of the program, as a factor
  std::optional<double> siteGain;  ///< of the site alone, as a factor
  int cores = 0;                   ///< what the gains are said for
  std::optional<std::int64_t> races;
  std::int64_t lockOrders = 0;
  std::int64_t otherFindings = 0;
  std::optional<std::array<std::int64_t, 3>> strides;  ///< steps of unit, constant and varying stride
  std::optional<double> surveyTime;                    ///< as the survey has it alone
  std::optional<double> suitabilityTime;               ///< as the suitability analysis has it alone
  /// What each analysis reported, to find its evidence by; null where it says nothing of the site.
  kelvar_2_1_7::PerKind<const digestio::SummaryDetail*> details{};
};

/// Reads the item once. Asks the annotation database where the site is now.
[[nodiscard]] Site siteOf(kelvar::SummaryItem& item);

/// `parallel`, `function`, `loop`.
[[nodiscard]] std::string kindName(const Site& site);
/// Whether it closes a region: such annotations have no row of their own.
[[nodiscard]] bool isEnd(const Site& site) noexcept;
/// `pixels.cpp:48`, with the last part of the path alone; `?` where no place is known.
[[nodiscard]] std::string shortPlace(const sitenotes::locator_t& place);
/// `sample/pixels.cpp:48`.
[[nodiscard]] std::string placeText(const sitenotes::locator_t& place);
/// A name for a row that outlives a reload: by its sequence, else by kind, place and label.
[[nodiscard]] std::string keyOf(const Site& site);
/// What an analysis is called in sentences.
[[nodiscard]] const char* analysisName(digestio::SummaryDataKind kind) noexcept;

/// The sort of stride that matters: the commoner of the two that are not unit, from a quarter of all steps on.
struct StrideShare {
  int sort = 0;      ///< 0 unit, 1 constant, 2 varying
  double share = 0;  ///< of all steps
};
[[nodiscard]] std::optional<StrideShare> strideOf(const Site& site) noexcept;
[[nodiscard]] const char* strideName(int sort) noexcept;

}  // namespace kelvar_page
