#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CompareColumns.h"

namespace kelvar_tool {

/// A gate that was asked for, and what fell at it.
struct GateResult {
  const Gate* gate = nullptr;
  std::size_t sites = 0;
  bool whole = false;  ///< the program as a whole is slower
  std::string lacks;   ///< why nothing could fall at it; empty: it was measured

  [[nodiscard]] bool fell() const noexcept { return sites > 0 || whole; }
};

using PrintComparison = void (*)(const ComparedSides& sides, const std::vector<GateResult>& gates);

/// For people: what changed, the greatest difference first, then what did not match, as wide as the terminal.
void printCompareText(const ComparedSides& sides, const std::vector<GateResult>& gates);
/// One object, with every site.
void printCompareJson(const ComparedSides& sides, const std::vector<GateResult>& gates);
/// A header, and a line for each site.
void printCompareCsv(const ComparedSides& sides, const std::vector<GateResult>& gates);

}  // namespace kelvar_tool
