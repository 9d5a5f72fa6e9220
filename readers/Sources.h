#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Binaries.h"
#include "Input.h"
#include "Record.h"

/// One reader for each format. Each gives its records as it meets them, and refuses what is not of its format or is
/// cut off, so that a caller who got to the end has seen all of it.
namespace kelvar_readers {

/// What goes with the files of one import: what readers are told, and what they tell beside their records.
struct Reading {
  Binaries& binaries;
  std::string event = {};                 ///< the one of several that is wanted; empty: there is only one
  std::string unit = {};                  ///< what one unit of a survey's weight is, as the files say
  bool hasStacks = false;                 ///< some record told who called its place
  bool hasCalls = false;                  ///< what calls cost came as records of their own
  bool isThorough = true;                 ///< false where a format that can tell inlined calls did not
  std::uint64_t mapAccesses = 0;          ///< of a trace of memory, how many are read; 0: all
  bool endedEarly = false;                ///< those were read, and there was more
  std::vector<std::string> remarks = {};  ///< sentences about what is lost, each once
  std::set<std::string> seen = {};        ///< what makes two files the same run, as the formats have it

  void remark(const std::string& sentence);
};

inline constexpr const char* kSeconds = "seconds";

/// What perf writes: the text of `perf script` with any fields that tell what is needed, or the perf.data itself.
/// Weights: the CPU time of each sample in seconds, or what its event counts, in millions.
void readPerf(Input& input, Reading& reading, const Sink& sink);
/// A callgrind.out: its first event (Ir, unless it was told otherwise), in millions. What calls cost comes at the
/// places of the calls.
void readCallgrind(Input& input, Reading& reading, const Sink& sink);

/// Weights of a loop: 1 where it was vectorised, 1 where it was not; the note is its width.
void readClangRemarks(Input& input, Reading& reading, const Sink& sink);
void readGccRemarks(Input& input, Reading& reading, const Sink& sink);

/// Weights of a finding: a race, a matter of lock order, anything else.
enum Finding : std::size_t { race, lockOrder, otherFinding };
void readTsan(Input& input, Reading& reading, const Sink& sink);
void readValgrindXml(Input& input, Reading& reading, const Sink& sink);

/// Weights of an instruction's accesses: of unit stride, of constant stride, of no stride. The places come from the
/// debug information of the program that ran, which must be given.
void readLackey(Input& input, Reading& reading, const Sink& sink);

/// Weights of a line: its seconds, how much faster it was made, how much faster that made the program.
void readCoz(Input& input, Reading& reading, const Sink& sink);

}  // namespace kelvar_readers
