#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Diagnosis.h"
#include "Evidence.h"
#include "Figures.h"
#include "Site.h"
#include "kelvar/SummaryData.h"

namespace kelvar_page {

using kelvar_platform::Evidence;
using kelvar_platform::EvidenceKind;
using kelvar_platform::EvidencePlace;

/// What figures rest on, by what an analysis reported of a site. Empty where results have no evidence.
class EvidenceIndex {
 public:
  /// Reads what is beside each result that `data` has taken, whose directories are `results`. Of a damaged file nothing
  /// is taken; why is appended to `complaints`. Nothing of the data may be hidden.
  void read(kelvar::SummaryData& data, const kelvar_2_1_7::PerKind<std::string>& results,
            std::vector<std::string>& complaints);
  void add(const digestio::SummaryDetail* detail, Evidence line);

  /// Details that the data has folded into the row of another are in no row: what they rest on is found by the row's
  /// from now on. Nothing of the data may be hidden.
  void adopt(const kelvar::SummaryData& data);

  /// All of it, in the order of the analyses.
  [[nodiscard]] std::vector<const Evidence*> of(const Site& site) const;
  /// The commonest of one kind; null where there is none.
  [[nodiscard]] const Evidence* first(const Site& site, EvidenceKind kind) const;
  /// Seconds that the survey saw on each line of a file, within sites. Of a line that several sites run, as nested ones
  /// do, the greatest that one of them tells: they count the same samples, so it is the least that the line took.
  [[nodiscard]] std::map<int, double> lineTimesIn(const toolbelt::path_t& file) const;

 private:
  using InFunction = std::pair<int, std::string>;  // a line, in one function
  using LineTimes = std::map<InFunction, double>;

  std::unordered_map<const digestio::SummaryDetail*, std::vector<Evidence>> lines_;
  std::map<std::string, std::map<std::string, LineTimes>> times_;  // by the leaf and the path of the file
};

/// How much a line of evidence stands for: `3 times`, and `72.0 ms` of a share of the time, which the survey measured
/// in `unit`. Empty for once.
[[nodiscard]] std::string countText(const Evidence& line, const TimeUnit& unit);
/// `race`, `lock order`.
[[nodiscard]] std::string evidenceName(EvidenceKind kind);
/// `write at pixels.cpp:57, read at pixels.cpp:57`; empty where it names no place.
[[nodiscard]] std::string placesText(const Evidence& line);

/// What a compiler's remark says besides its verdict, which the reader has anyway: the first sentence of the reason, or
/// the width; may be empty.
[[nodiscard]] std::string reasonText(const Evidence& line);

}  // namespace kelvar_page
