#include "Collection.h"

#include <cstring>

#include "CollectionReader.h"
#include "Diagnosis.h"
#include "ReadAhead.h"

namespace kelvar_platform {

std::string_view Collection::keep(std::string_view text) {
  if (text.empty()) return {};
  auto* const copy = static_cast<char*>(arena_.allocate(text.size(), alignof(char)));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

}  // namespace kelvar_platform

// cppcheck-suppress passedByValue; the interface has it so
digestio::SummaryCollection* digestio::SummaryCollection::load(std::string path) {
  try {
    if (auto collection = kelvar_platform::ReadAhead::take(path)) return collection.release();
    kelvar_platform::JsonReader reader;
    return kelvar_platform::readCollection(path, reader).release();
  } catch (const kelvar_platform::ReadError& error) {
    kelvar_platform::note(error.refusal());
    return nullptr;
  }
}
