/// Any bytes as the output of the tool that KELVAR_READER reads: records to the end of it, or a refusal.
#include <cstdlib>
#include <string>
#include <vector>

#include "Diagnosis.h"
#include "ScratchFile.h"
#include "Sources.h"

#ifndef KELVAR_BINARY
#define KELVAR_BINARY ""
#endif

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvar_readers;
  static const ScratchFile scratch("in");
  // A perf.data would be given to perf itself.
  if (size >= 8 && std::string_view(reinterpret_cast<const char*>(data), 8) == "PERFILE2") return 0;
  scratch.write({data, size});
  static Frames known;
  static const std::string path = KELVAR_BINARY;
  static Binaries binaries(path.empty() ? std::vector<std::string>() : std::vector<std::string>{path}, known);
  Reading reading{.binaries = binaries};
  try {
    Input input(scratch.file());
    KELVAR_READER(input, reading, [](const Record& record) {
      for (const Frame* const frame : record.stack) {
        if (frame->chain.empty()) std::abort();
        for (const Place& place : frame->chain) {
          if (place.line < 0 || place.column < 0) std::abort();
        }
      }
    });
  } catch (const kelvar_platform::ReadError& error) {
    if ((error.refusal().expected + error.refusal().problem).empty()) std::abort();
  }
  return 0;
}
