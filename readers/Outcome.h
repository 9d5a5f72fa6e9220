#pragma once

#include <string>
#include <vector>

#include "Evidence.h"
#include "Places.h"
#include "ResultRecords.h"
#include "Tally.h"

namespace kelvar_readers {

using Detail = kelvar_platform::DetailRecord;

/// The result of an import, before it is written.
struct Outcome {
  std::vector<Detail> details;
  std::vector<kelvar_platform::Evidence> evidence;  ///< for the details, which it names by index
  double programMaxGain = 0;
  std::string emptiness;             ///< why the result says nothing about the program; empty when it does
  std::string lineTimes;             ///< of a survey: the text of kLineTimesFile, for later imports
  std::vector<std::string> remarks;  ///< sentences for the user: records without a place, what was left out, units
};

/// A row for the annotated site.
[[nodiscard]] Detail siteDetail(const Region& region);
/// A row for the function, as a hot spot.
[[nodiscard]] Detail functionDetail(const FunctionRow& function);
/// The functions with at least `percent` of the weight of all functions; adds to `remarks` how many were left out.
[[nodiscard]] std::vector<FunctionRow> weighty(std::vector<FunctionRow> functions, double percent,
                                               std::vector<std::string>& remarks);
/// The words between the numbers of records and their weight. `kelvar show` looks for them in the log of a result.
inline constexpr const char* kPlacelessRemark = " records have no place, so they are in no row; together they weigh ";
/// Adds to `remarks` how many records have no place, if any.
void remarkPlaceless(const Tally& tally, std::size_t records, std::vector<std::string>& remarks);

/// The place in the form that evidence has; `role` is what happened there.
[[nodiscard]] kelvar_platform::EvidencePlace evidencePlace(const Place& place, Places& places,
                                                           const std::string& role = {});
/// A text that a result can hold: bytes that are no UTF-8 are escaped, control characters become blanks.
[[nodiscard]] std::string plainText(std::string_view text);

/// The weight as an integer, at most INT_MAX.
[[nodiscard]] int countOf(double value);
/// The priority of a share of the total: 1 from a tenth, 2 from a hundredth, else 3.
[[nodiscard]] int priorityOf(double share);

}  // namespace kelvar_readers
