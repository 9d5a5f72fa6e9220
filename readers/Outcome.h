#pragma once

#include <string>
#include <vector>

#include "Evidence.h"
#include "Places.h"
#include "ResultRecords.h"
#include "Tally.h"

namespace kelvar_readers {

using Detail = kelvar_platform::DetailRecord;

/// All that an import found out.
struct Outcome {
  std::vector<Detail> details;
  std::vector<kelvar_platform::Evidence> evidence;  ///< what the details rest on
  double programMaxGain = 0;
  std::string emptiness;             ///< why this says nothing of the program; empty where it says something
  std::string lineTimes;             ///< of a survey: the text of its LineTime file, for what is imported after it
  std::vector<std::string> remarks;  ///< sentences for who imports: what had no place, what was left out, what units
};

/// A row for the annotated site.
[[nodiscard]] Detail siteDetail(const Region& region);
/// A row for the function, as a hot spot.
[[nodiscard]] Detail functionDetail(const FunctionRow& function);
/// The functions that hold at least `percent` of all that the functions hold; says in `remarks` how many do not.
[[nodiscard]] std::vector<FunctionRow> weighty(std::vector<FunctionRow> functions, double percent,
                                               std::vector<std::string>& remarks);
/// Says in `remarks` what belongs to no place, where anything does.
void remarkPlaceless(const Tally& tally, std::size_t records, std::vector<std::string>& remarks);

/// A place as evidence names it; `role` is what happened there.
[[nodiscard]] kelvar_platform::EvidencePlace evidencePlace(const Place& place, Places& places,
                                                           const std::string& role = {});
/// A text that a result can hold: what is no UTF-8 is escaped, and so is what breaks a line.
[[nodiscard]] std::string plainText(std::string_view text);

/// A count as a result holds it.
[[nodiscard]] int countOf(double value);
/// 1 for what takes a tenth of the whole or more, 2 for a hundredth or more, else 3.
[[nodiscard]] int priorityOf(double share);

}  // namespace kelvar_readers
