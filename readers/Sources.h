#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Binaries.h"
#include "Input.h"
#include "Record.h"

/// One reader for each format. Each passes its records to the sink one by one, and throws kelvar_platform::ReadError
/// for a file that is of another format or cut off: a reader that returns has read the whole file, unless it sets
/// endedEarly.
namespace kelvar_readers {

/// The state shared by the readers of one import: their options, and what they find out apart from records.
struct Reading {
  Binaries& binaries;
  std::string event = {};                 ///< the event to read; empty: the file has only one
  std::string unit = {};                  ///< of a survey's weights, according to the files
  bool hasStacks = false;                 ///< at least one record has a caller
  bool hasCalls = false;                  ///< the costs of calls came as records of their own
  std::uint64_t mapAccesses = 0;          ///< the most accesses to read of a memory trace; 0: all
  bool endedEarly = false;                ///< that limit was reached before the end of the file
  std::vector<std::string> remarks = {};  ///< sentences about what was lost, each once
  std::set<std::string> seen = {};        ///< keys of the runs that were read, to refuse a file given twice

  void remark(const std::string& sentence);
};

inline constexpr const char* kSeconds = "seconds";

/// The text of `perf script`, or a perf.data itself. Weights: the CPU time of each sample in seconds, or its count of
/// events, in millions.
void readPerf(Input& input, Reading& reading, const Sink& sink);
/// A callgrind.out: its first event, usually Ir, in millions. The costs of calls are records at the places of the
/// calls.
void readCallgrind(Input& input, Reading& reading, const Sink& sink);

/// Weights of a loop: {1, 0, 0} if it was vectorised, {0, 1, 0} if not, all 0 for a reason why not. The note is the
/// width.
void readClangRemarks(Input& input, Reading& reading, const Sink& sink);
void readGccRemarks(Input& input, Reading& reading, const Sink& sink);

/// Weights of a finding: 1 at the index of its kind.
enum Finding : std::size_t { race, lockOrder, otherFinding };
void readTsan(Input& input, Reading& reading, const Sink& sink);
void readValgrindXml(Input& input, Reading& reading, const Sink& sink);

/// Weights: the numbers of accesses with unit stride, with constant stride, and without a stride. The places come from
/// the debug information of the program that ran, which the user must give.
void readLackey(Input& input, Reading& reading, const Sink& sink);

/// Weights of a line: its seconds, how many times as fast it was made, how many times as fast that made the program.
void readCoz(Input& input, Reading& reading, const Sink& sink);

}  // namespace kelvar_readers
