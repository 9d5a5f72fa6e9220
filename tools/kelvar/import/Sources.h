#pragma once

#include <string>

#include "Input.h"
#include "Record.h"

/// One reader for each format. Each gives its records as it meets them, and refuses what is not of its format or is
/// cut off, so that a caller who got to the end has seen all of it.
namespace kelvar_import {

/// What one unit of a survey's weight is.
inline constexpr const char* kSeconds = "seconds";
inline constexpr const char* kMegaInstructions = "millions of instructions";

/// The text of `perf script`: the CPU time of each sample, in seconds.
void readPerf(Input& input, const Sink& sink);
/// A callgrind.out: its first event (Ir, unless it was told otherwise), in millions.
void readCallgrind(Input& input, const Sink& sink);

/// Weights of a loop: 1 where it was vectorised, 1 where it was not; the note is its width.
void readClangRemarks(Input& input, const Sink& sink);
void readGccRemarks(Input& input, const Sink& sink);

/// Weights of a finding: a race, a matter of lock order, anything else.
enum Finding : std::size_t { race, lockOrder, otherFinding };
void readTsan(Input& input, const Sink& sink);
void readValgrindXml(Input& input, const Sink& sink);

/// Weights of an instruction's accesses: of unit stride, of constant stride, of no stride.
/// The places come from the debug information of `binary`, the program that ran or its separate debug file.
void readLackey(Input& input, const std::string& binary, const Sink& sink);

/// Weights of a line: its seconds, how much faster it was made, how much faster that made the program.
void readCoz(Input& input, const Sink& sink);

}  // namespace kelvar_import
