/// Any bytes as evidence.jsonl: lines that are written and read back as they are, or a refusal with its line.
#include <cstdlib>
#include <string>

#include "Diagnosis.h"
#include "Evidence.h"
#include "ScratchFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("evidence.jsonl");
  scratch.write({data, size});
  std::vector<kelvar_platform::Evidence> evidence;
  try {
    evidence = kelvar_platform::readEvidence(scratch.directory());
  } catch (const kelvar_platform::ReadError& error) {
    if (!error.refusal().place.starts_with("line ") || error.refusal().expected.empty()) std::abort();
    return 0;
  }
  // Writing sorts them once; what is written then stays as it is.
  kelvar_platform::writeEvidence(scratch.directory(), evidence);
  const auto sorted = kelvar_platform::readEvidence(scratch.directory());
  kelvar_platform::writeEvidence(scratch.directory(), sorted);
  if (sorted.size() != evidence.size() || kelvar_platform::readEvidence(scratch.directory()) != sorted) std::abort();
  return 0;
}
