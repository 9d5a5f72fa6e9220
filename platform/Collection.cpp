#include "Collection.h"

#include <algorithm>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "CollectionReader.h"
#include "Diagnosis.h"
#include "ReadAhead.h"

namespace kelvar_platform {

namespace {

/// The rank of each leaf among those of all details.
class LeafRanks {
 public:
  explicit LeafRanks(std::span<const DetailFields> details) {
    for (const DetailFields& detail : details) ranks_.try_emplace(&detail.file.get_leaf(), 0);
    std::vector<const std::string*> leaves;
    for (const auto& leaf : ranks_) leaves.push_back(leaf.first);
    std::sort(leaves.begin(), leaves.end(), [](const auto* a, const auto* b) { return *a < *b; });
    for (std::uint32_t rank = 0; rank < leaves.size(); ++rank) ranks_[leaves[rank]] = rank;
  }

  [[nodiscard]] std::uint32_t of(const DetailFields& detail) const { return ranks_.at(&detail.file.get_leaf()); }

 private:
  boost::unordered_flat_map<const std::string*, std::uint32_t> ranks_;  // equal leaves share one text
};

/// A detail's index, and its leaf and line as one number.
struct Placed {
  std::uint64_t key;
  std::uint32_t index;
};

/// Sorts each run of equal keys.
template <class Before>
void sortTies(std::vector<Placed>& places, const Before& before) {
  for (auto begin = places.begin(); begin != places.end();) {
    auto end = begin + 1;
    while (end != places.end() && end->key == begin->key) ++end;
    if (end - begin > 1) std::sort(begin, end, before);
    begin = end;
  }
}

/// The details in display order.
std::vector<Placed> byPlace(std::span<const DetailFields> details) {
  const LeafRanks ranks(details);
  std::vector<Placed> places;
  places.reserve(details.size());
  for (const DetailFields& detail : details) {
    const auto line = static_cast<std::uint32_t>(detail.line);  // never negative
    places.push_back({std::uint64_t{ranks.of(detail)} << 32 | line, static_cast<std::uint32_t>(places.size())});
  }
  boost::sort::pdqsort_branchless(places.begin(), places.end(),
                                  [](const Placed& a, const Placed& b) { return a.key < b.key; });
  sortTies(places, [&](const Placed& a, const Placed& b) {
    const int order = placeOf(details[a.index]).display_order(placeOf(details[b.index]));
    return order != 0 ? order < 0 : a.index < b.index;
  });
  return places;
}

}  // namespace

std::string_view Collection::copied(std::string_view text) {
  if (text.empty()) return {};
  auto* const copy = static_cast<char*>(arena_.allocate(text.size(), alignof(char)));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

void Collection::add(const AnalysisView& view, AnalysisViews& views) {
  const bool isFirst = std::holds_alternative<std::monostate>(views.view);
  if (!isFirst) views.others = ::new (arena_.allocate(sizeof views, alignof(AnalysisViews))) AnalysisViews(views);
  views.view = view;
}

namespace {

/// Prefetches a record, which is two or three cache lines.
void prefetch(const DetailFields& fields) noexcept {
  constexpr std::size_t kLine = 64;
  const char* const begin = reinterpret_cast<const char*>(&fields);
  for (std::size_t byte = 0; byte < sizeof fields; byte += kLine) __builtin_prefetch(begin + byte);
  __builtin_prefetch(begin + sizeof fields - 1);
  asm volatile("");  // otherwise a function without effects is optimised away
}

}  // namespace

void Collection::take(std::span<const DetailFields> inOrder) {
  constexpr std::size_t kStep = 16;
  const std::vector<Placed> places = byPlace(inOrder);
  const auto fieldsAt = [&](std::size_t place) { return &inOrder[places[place].index]; };
  details_.reserve(inOrder.size());
  inOrder_.resize(inOrder.size());
  for (std::size_t place = 0; place < places.size(); ++place) {
    if (place + 2 * kStep < places.size()) prefetch(*fieldsAt(place + 2 * kStep));
    if (place + kStep < places.size()) __builtin_prefetch(fieldsAt(place + kStep)->label.data());
    const DetailFields& fields = *fieldsAt(place);
    inOrder_[places[place].index] = &details_.emplace_back(fields, copied(fields.label));
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
