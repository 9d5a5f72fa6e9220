/// Any bytes as result.json: either the directory opens and can be read, or it is refused with a place.
#include <cstdlib>
#include <string>

#include "Diagnosis.h"
#include "ScratchFile.h"
#include "resdir.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("result.json");
  scratch.write({data, size});
  const auto directory = resdir::ResultDirectoryManager::open(scratch.directory().c_str(), false, nullptr);
  const auto refusals = kelvar_platform::takeRefusals();
  if ((directory == nullptr) != (refusals.size() == 1)) std::abort();
  if (!directory) return 0;
  if (const char* host = directory->hostName()) static_cast<void>(std::string(host));
  if (const char* system = directory->operatingSystem(0)) static_cast<void>(std::string(system));
  if (directory->cpuCount() < 0 || directory->applicationLogPath().empty()) std::abort();
  static_cast<void>(directory->collectorLogPath() + directory->commandLogPath());
  return 0;
}
