#pragma once

#include <string>

#include "Child.h"
#include "ResultRecords.h"

namespace kelvar_tool {

/// Which tools this machine has.
struct Machine {
  std::string noPerf;  ///< why perf cannot measure, and how to change that; empty when it can
  bool hasValgrind = false;
  bool hasCoz = false;
};

/// The path at which a shell would find the program; empty when it would find none.
[[nodiscard]] std::string foundAs(const std::string& name);

/// Also tries perf on a program that does nothing, which writes a file into `folder`.
[[nodiscard]] Machine thisMachine(const std::string& folder, const Guard& guard, Interrupts& interrupts);

/// The host, operating system and processor count, for results.
[[nodiscard]] kelvar_platform::RunRecord hostRecord();

}  // namespace kelvar_tool
