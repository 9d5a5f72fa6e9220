/// Any bytes as a program with debug information: chains at its addresses, or a refusal.
#include <cstdlib>

#include "Diagnosis.h"
#include "ScratchFile.h"
#include "Symbols.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("program");
  scratch.write({data, size});
  kelvar_readers::Frames frames;
  try {
    kelvar_readers::Symbols symbols(scratch.file(), frames);
    for (std::uint64_t offset = 0; offset < 0x3000; offset += 61) {
      const auto address = symbols.addressOfOffset(offset);
      if (symbols.frameAt(address.value_or(0x401000 + offset)).chain.empty()) std::abort();
    }
  } catch (const kelvar_platform::ReadError& error) {
    if ((error.refusal().expected + error.refusal().problem).empty()) std::abort();
  }
  return 0;
}
