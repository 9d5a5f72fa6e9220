#include <array>
#include <cstddef>

#include "sitenotes.h"

namespace sitenotes {

namespace {

/// By kind, in the words of the OpenMP standard where it has one.
constexpr std::array<const char*, annotation_t::all_kinds> kNames{
    "parallel", "end parallel", "task",   "end task", "taskloop",     "critical",  "end critical",
    "pause",    "resume",       "shared", "private",  "firstprivate", "reduction", "barrier",
    "taskwait", "atomic",       "flush",  "ordered",  "teams"};
static_assert(kNames.back() != nullptr, "one name for each kind");

}  // namespace

const char* annotation_t::display(kind_t kind) {
  const auto index = static_cast<std::size_t>(kind);  // negative values become large
  return index < kNames.size() ? kNames[index] : "";
}

}  // namespace sitenotes
