#include "Names.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <system_error>

#include "Messages.h"

namespace kelvar_tool {

namespace {

using sitenotes::annotation_t;

constexpr int kAnnotationKindCount = annotation_t::all_kinds;

const std::vector<std::string>& dataKindNames() {
  static const std::vector<std::string> names{"survey", "surveyvectorization", "suitability", "dependencies", "map"};
  return names;
}

std::vector<std::string> namesOfAnnotationKinds() {
  std::vector<std::string> names;
  for (int kind = 0; kind < kAnnotationKindCount; ++kind) {
    std::string name = annotation_t::display(static_cast<annotation_t::kind_t>(kind));
    std::replace(name.begin(), name.end(), ' ', '-');
    names.push_back(std::move(name));
  }
  return names;
}

std::optional<int> indexOf(const std::string& text, const std::vector<std::string>& names) {
  const auto found = std::find(names.begin(), names.end(), text);
  if (found == names.end()) return std::nullopt;
  return static_cast<int>(found - names.begin());
}

std::optional<int> indexOrNumber(const std::string& text, const std::vector<std::string>& names) {
  if (const auto number = decimal(text, static_cast<std::int64_t>(names.size()) - 1)) return static_cast<int>(*number);
  return indexOf(text, names);
}

std::optional<annotation_t::kind_t> annotationKind(std::string name) {
  std::replace(name.begin(), name.end(), ' ', '-');
  const std::optional<int> kind = indexOrNumber(name, annotationKindNames());
  return kind ? std::optional(static_cast<annotation_t::kind_t>(*kind)) : std::nullopt;
}

[[noreturn]] void refuse(std::string_view option, const std::string& text, const std::string& expected,
                         const std::vector<std::string>& candidates) {
  throw UsageError(std::string(option) + ": expected " + expected + ", not " + inQuotes(text) +
                   proposal(text, candidates));
}

// The edit distance: letters added, left out, replaced, or swapped with their neighbour.
std::size_t slips(std::string_view typed, std::string_view meant) {
  std::vector<std::size_t> beforeLast(meant.size() + 1);
  std::vector<std::size_t> last(meant.size() + 1);
  std::vector<std::size_t> current(meant.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= typed.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= meant.size(); ++j) {
      const std::size_t other = typed[i - 1] == meant[j - 1] ? 0 : 1;
      current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + other});
      const bool swapped = i > 1 && j > 1 && typed[i - 1] == meant[j - 2] && typed[i - 2] == meant[j - 1];
      if (swapped) current[j] = std::min(current[j], beforeLast[j - 2] + 1);
    }
    std::swap(beforeLast, last);
    std::swap(last, current);
  }
  return last[meant.size()];
}

}  // namespace

const std::vector<std::string>& orderingNames() {
  static constexpr const char* kNames[] = {"locator",
                                           "kind",
                                           "label",
                                           "survey-cpu-time",
                                           "survey-priority",
                                           "survey-id",
                                           "survey-vectorization-self-time",
                                           "survey-vectorization-total-time",
                                           "survey-vectorization-priority",
                                           "suitability-self-time",
                                           "suitability-self-max-gain",
                                           "suitability-total-max-gain",
                                           "dependencies-errors",
                                           "dependencies-warnings",
                                           "general-kind-locator"};
  static_assert(std::size(kNames) == kelvar::kSummaryMappingCount, "a name for each ordering");
  static const std::vector<std::string> names(std::begin(kNames), std::end(kNames));
  return names;
}

const std::vector<std::string>& annotationKindNames() {
  static const std::vector<std::string> names = namesOfAnnotationKinds();
  return names;
}

std::string numbered(const std::vector<std::string>& names) {
  std::string lines;
  for (std::size_t value = 0; value < names.size(); ++value) lines += "\n" + std::to_string(value) + " " + names[value];
  return lines;
}

const std::string& dataKindName(digestio::SummaryDataKind kind) {
  return dataKindNames()[static_cast<std::size_t>(kind)];
}

kelvar::SummaryMapping orderingNamed(std::string_view option, const std::string& text) {
  if (const auto ordering = indexOrNumber(text, orderingNames())) return static_cast<kelvar::SummaryMapping>(*ordering);
  refuse(option, text,
         "the name of an ordering or its number, 0 to " + std::to_string(kelvar::kSummaryMappingCount - 1),
         orderingNames());
}

digestio::SummaryDataKind dataKindNamed(std::string_view option, const std::string& text) {
  if (const auto kind = indexOf(text, dataKindNames())) return static_cast<digestio::SummaryDataKind>(*kind);
  refuse(option, text, "survey, surveyvectorization, suitability, dependencies or map", dataKindNames());
}

digestio::SummaryDetailKind detailKindNamed(std::string_view option, const std::string& text) {
  if (text == "1") return digestio::kHotSpot;
  if (text == "2") return digestio::kLoop;
  refuse(option, text, "1 (hot spots) or 2 (loops)", {});
}

annotation_t::kind_t annotationKindNamed(std::string_view option, const std::string& text) {
  if (const auto kind = annotationKind(text)) return *kind;
  refuse(option, text, "the name of an annotation kind or its number, 0 to 18", annotationKindNames());
}

annotation_t::kind_t annotationKindOrAllNamed(std::string_view option, const std::string& text) {
  if (text == "all") return annotation_t::all_kinds;
  if (const auto kind = annotationKind(text)) return *kind;
  refuse(option, text, "the name of an annotation kind, its number, 0 to 18, or all", annotationKindNames());
}

std::optional<std::int64_t> decimal(std::string_view text, std::int64_t greatest) {
  if (text.empty() || text.front() == '-') return std::nullopt;
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number > greatest) return std::nullopt;
  return number;
}

void refuseName(std::string_view option, const std::string& text, const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : &name == &names.back() ? " or " : ", ") + name;
  refuse(option, text, list, names);
}

std::string proposal(const std::string& text, const std::vector<std::string>& candidates) {
  constexpr std::size_t kLongestName = 64;  // anything longer is not a typing mistake
  if (text.size() > kLongestName) return {};
  const std::string* nearest = nullptr;
  std::size_t fewest = std::max<std::size_t>(2, text.size() / 3) + 1;
  for (const std::string& candidate : candidates) {
    const std::size_t distance = slips(text, candidate);
    if (distance >= fewest || distance >= candidate.size()) continue;
    fewest = distance;
    nearest = &candidate;
  }
  return nearest ? "; did you mean " + inQuotes(*nearest) + "?" : std::string();
}

}  // namespace kelvar_tool
