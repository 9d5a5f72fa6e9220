/// Any bytes as annotations.db: either all sites and states can be read, or the file is refused.
#include <cstdlib>

#include "Annotations.h"
#include "Diagnosis.h"
#include "ScratchFile.h"

namespace {

void readSites(sitenotes::database_t& database) {
  unsigned long before = 0;
  for (const unsigned long sequence : database.get_sequences()) {
    if (sequence <= before) std::abort();
    before = sequence;
    const auto annotation = database.get_latest_annotation(sequence);
    if (database.is_sequence_alive(sequence) != (annotation != nullptr)) std::abort();
    if (!annotation) continue;
    if (annotation->get_kind() < 0 || annotation->get_kind() >= sitenotes::annotation_t::all_kinds) std::abort();
    static_cast<void>(annotation->get_label() + annotation->get_locator().get_file().get_leaf());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("annotations.db");
  scratch.write({data, size});
  try {
    const auto database = kelvar_platform::openAnnotationDatabase(scratch.file());
    readSites(*database);
    for (const char* result : {"survey", "survey/surveyvectorization", "map"}) {
      if (const auto state = database->get_state(scratch.directory() + "/" + result)) readSites(*state);
    }
    readSites(*database->make_state(scratch.directory() + "/suitability", false));
  } catch (const kelvar_platform::ReadError& error) {
    if (error.refusal().file != scratch.file() || error.refusal().expected.empty()) std::abort();
  }
  return 0;
}
