#pragma once

#include <string>

#include "Child.h"
#include "ResultRecords.h"

namespace kelvar_tool {

/// What of the tools is here.
struct Machine {
  std::string noPerf;  ///< why perf cannot measure, and what would let it; empty where it can
  bool hasValgrind = false;
  bool hasCoz = false;
};

/// Where a shell would find the program; empty: nowhere.
[[nodiscard]] std::string foundAs(const std::string& name);

/// Tries perf on a program that does nothing; what it writes goes into `folder`.
[[nodiscard]] Machine thisMachine(const std::string& folder, const Guard& guard, Interrupts& interrupts);

/// Host, system and processors, for results.
[[nodiscard]] kelvar_platform::RunRecord hostRecord();

}  // namespace kelvar_tool
