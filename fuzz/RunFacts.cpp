/// Any bytes as run.json: facts that are written and read back as they are, or a refusal that says why.
#include <cstdlib>
#include <string>

#include "Diagnosis.h"
#include "RunFolder.h"
#include "ScratchFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("run.json");
  scratch.write({data, size});
  kelvar_import::RunFacts facts;
  try {
    facts = kelvar_import::readRunFacts(scratch.directory());
  } catch (const kelvar_platform::ReadError& error) {
    // What is no object at all has no place.
    if (error.refusal().expected.empty() == error.refusal().problem.empty()) std::abort();
    return 0;
  }
  kelvar_import::writeRunFacts(scratch.directory(), facts);
  if (kelvar_import::readRunFacts(scratch.directory()) != facts) std::abort();
  return 0;
}
