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

/// The evidence behind the figures, by detail. Empty when the results have none.
class EvidenceIndex {
 public:
  /// Reads the evidence beside each result of `data`; `results` are the results' directories. A damaged file is left
  /// out, and a sentence about it added to `complaints`. Requires that nothing of the data is hidden.
  void read(kelvar::SummaryData& data, const kelvar_2_1_7::PerKind<std::string>& results,
            std::vector<std::string>& complaints);
  void add(const digestio::SummaryDetail* detail, Evidence line);

  /// Moves the evidence of details that the library has folded into another row to that row's detail. Requires that
  /// nothing of the data is hidden.
  void adopt(const kelvar::SummaryData& data);

  /// All evidence of the site, in the order of the analyses. Valid until evidence is added.
  [[nodiscard]] std::vector<const Evidence*> of(const Site& site) const;
  /// The line of this kind with the greatest count; null when there is none.
  [[nodiscard]] const Evidence* first(const Site& site, EvidenceKind kind) const;
  /// Seconds of each line of a file, as far as it ran within sites. If several sites have a time for one line, as
  /// nested sites do, the greatest counts: they share their samples, so a sum would count them twice.
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
/// `write at pixels.cpp:57, read at pixels.cpp:57`; empty when the line has no places.
[[nodiscard]] std::string placesText(const Evidence& line);

/// A compiler's remark without its verdict, which is shown elsewhere: the first sentence of the reason, or the width;
/// may be empty.
[[nodiscard]] std::string reasonText(const Evidence& line);

}  // namespace kelvar_page
