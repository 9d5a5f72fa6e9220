#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "digestio.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

/// What the command line calls things. Each of these throws UsageError for a text that names nothing; the sentence
/// begins with `option`, and proposes the name that the text is nearest to.
namespace kelvar_tool {

/// By name or by number, 0 to 14.
[[nodiscard]] kelvar::SummaryMapping orderingNamed(std::string_view option, const std::string& text);
[[nodiscard]] digestio::SummaryDataKind dataKindNamed(std::string_view option, const std::string& text);
/// Hot spots or loops, by number. Annotated sites are hidden by annotation kind.
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

/// What an analysis is called in sentences, by its value; the name of its `dataKind`.
[[nodiscard]] const std::string& dataKindName(digestio::SummaryDataKind kind);

/// The number that `text` writes in decimal digits alone; nothing where it is none or exceeds `greatest`.
[[nodiscard]] std::optional<std::int64_t> decimal(std::string_view text, std::int64_t greatest);

/// `; did you mean 'NAME'?` for the candidate that is a slip of the hand away from `text`; empty where none is.
[[nodiscard]] std::string proposal(const std::string& text, const std::vector<std::string>& candidates);

}  // namespace kelvar_tool
