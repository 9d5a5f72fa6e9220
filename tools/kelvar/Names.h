#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "digestio.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

/// The names of the command line. Each of these throws UsageError for an unknown name; the sentence begins with
/// `option` and proposes the nearest name.
namespace kelvar_tool {

/// By name or by number.
[[nodiscard]] kelvar::SummaryMapping orderingNamed(std::string_view option, const std::string& text);
[[nodiscard]] digestio::SummaryDataKind dataKindNamed(std::string_view option, const std::string& text);
/// Hot spots or loops, by number. (Annotated sites are hidden by annotation kind.)
[[nodiscard]] digestio::SummaryDetailKind detailKindNamed(std::string_view option, const std::string& text);
/// By display name, with `-` or a blank between its words, or by number, 0 to 18.
[[nodiscard]] sitenotes::annotation_t::kind_t annotationKindNamed(std::string_view option, const std::string& text);
/// The same, or `all`.
[[nodiscard]] sitenotes::annotation_t::kind_t annotationKindOrAllNamed(std::string_view option,
                                                                       const std::string& text);

/// The names of the orderings and of the annotation kinds, by value, as the command line takes and prints them.
[[nodiscard]] const std::vector<std::string>& orderingNames();
[[nodiscard]] const std::vector<std::string>& annotationKindNames();

/// The names with their values, one on a line, for a help text; begins with a line break.
[[nodiscard]] std::string numbered(const std::vector<std::string>& names);

/// The name of an analysis in sentences, which is that of its `dataKind`.
[[nodiscard]] const std::string& dataKindName(digestio::SummaryDataKind kind);

/// The number that `text` spells in decimal digits; nothing if it is not a number or exceeds `greatest`.
[[nodiscard]] std::optional<std::int64_t> decimal(std::string_view text, std::int64_t greatest);

/// `; did you mean 'NAME'?` for the candidate that is a typing mistake away from `text`; empty if there is none.
[[nodiscard]] std::string proposal(const std::string& text, const std::vector<std::string>& candidates);

/// The sentence lists all `names`.
[[noreturn]] void refuseName(std::string_view option, const std::string& text, const std::vector<std::string>& names);

/// The row of a table whose member `name` is `text`.
template <class Rows>
[[nodiscard]] const auto& rowNamed(std::string_view option, const std::string& text, const Rows& rows) {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.name == text; });
  if (found != rows.end()) return *found;
  std::vector<std::string> names;
  names.reserve(std::size(rows));
  for (const auto& row : rows) names.emplace_back(row.name);
  refuseName(option, text, names);
}

}  // namespace kelvar_tool
