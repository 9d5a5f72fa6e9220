#include "Collection.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <tuple>

#include "CollectionReader.h"
#include "Diagnosis.h"
#include "ReadAhead.h"

namespace kelvar_platform {

namespace {

/// Where a detail lies among others.
struct Place {
  const std::string* file;  // equal paths share their text
  std::int32_t line;
  std::uint32_t index;
};

std::vector<Place> byPlace(std::span<const DetailFields> details) {
  std::vector<Place> places;
  places.reserve(details.size());
  for (const DetailFields& detail : details) {
    places.push_back({&detail.file.get_text(), detail.line, static_cast<std::uint32_t>(places.size())});
  }
  std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
    if (a.file != b.file) return std::less<>()(a.file, b.file);
    return std::tie(a.line, a.index) < std::tie(b.line, b.index);
  });
  return places;
}

}  // namespace

std::string_view Collection::keep(std::string_view text) {
  if (text.empty()) return {};
  auto* const copy = static_cast<char*>(arena_.allocate(text.size(), alignof(char)));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

void Collection::take(std::span<const DetailFields> inOrder) {
  constexpr std::size_t kStep = 16;
  const std::vector<Place> places = byPlace(inOrder);
  const auto fieldsAt = [&](std::size_t place) { return &inOrder[places[place].index]; };
  inOrder_.resize(inOrder.size());
  for (std::size_t place = 0; place < places.size(); ++place) {
    if (place + 2 * kStep < places.size()) __builtin_prefetch(fieldsAt(place + 2 * kStep));
    if (place + kStep < places.size()) __builtin_prefetch(fieldsAt(place + kStep)->label.data());
    DetailFields fields = *fieldsAt(place);
    fields.label = keep(fields.label);
    inOrder_[places[place].index] = &details_.emplace_back(fields);
  }
}

}  // namespace kelvar_platform

// cppcheck-suppress passedByValue; the interface has it so
digestio::SummaryCollection* digestio::SummaryCollection::load(std::string path) {
  try {
    if (auto collection = kelvar_platform::ReadAhead::take(path)) return collection.release();
    return kelvar_platform::CollectionReader().read(path).release();
  } catch (const kelvar_platform::ReadError& error) {
    kelvar_platform::note(error.refusal());
    return nullptr;
  }
}
