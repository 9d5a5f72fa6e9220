#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CompareColumns.h"

namespace kelvar_tool {

/// A requested gate and its outcome.
struct GateResult {
  const Gate* gate = nullptr;
  std::size_t sites = 0;
  bool whole = false;  ///< the program as a whole is slower
  std::string lacks;   ///< what was not measured, so that it could not fail; empty: it was measured

  [[nodiscard]] bool fell() const noexcept { return sites > 0 || whole; }
};

using PrintComparison = void (*)(const ComparedSides& sides, const std::vector<GateResult>& gates);

/// For people, as wide as the terminal: what changed, the greatest difference first, then the sites of one side only.
void printCompareText(const ComparedSides& sides, const std::vector<GateResult>& gates);
/// One object, with every site.
void printCompareJson(const ComparedSides& sides, const std::vector<GateResult>& gates);
/// A header, and a line for each site.
void printCompareCsv(const ComparedSides& sides, const std::vector<GateResult>& gates);

}  // namespace kelvar_tool
