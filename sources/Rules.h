#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sitenotes.h"

namespace kelvar_sources {

using Kind = sitenotes::annotation_t::kind_t;

/// The form of a marker.
enum class Form {
  directive,  ///< `#pragma omp parallel`, `!$omp parallel`: matches if the directive's words include the last word
  call,       ///< `NAME(...)`, where the name may be qualified
  object,     ///< `TYPE variable(...)`, `TYPE(...)` or `TYPE` alone
  argument,   ///< `NAME` as an argument of a call; the call is the site
  remark,     ///< a comment `// kelvar: NAME "label"`
};

/// Where a marker's label comes from.
struct LabelSource {
  enum class From {
    none,
    literal,   ///< an argument that is a text in quotes
    argument,  ///< an argument that is a text in quotes or a name
    brackets,  ///< the content of the brackets after the directive's name
  } from = From::none;
  int index = 1;  ///< of the argument, from 1
};

/// Where the region of a marker ends.
struct RegionEnd {
  enum class At {
    none,       ///< there is no region
    statement,  ///< at the end of the next statement
    call,       ///< at the end of the call
    block,      ///< at the end of the block around the marker
    until,      ///< at the call `name` with the same label, else at the nearest call `name`
    handle,     ///< at the call `name` with the same first argument as the marker
  } at = At::none;
  std::string name;
};

/// One row of the table of markers.
struct Rule {
  std::string name;
  Form form = Form::call;
  std::string pattern;
  std::optional<Kind> kind;  ///< none: markers are counted, but are no sites
  LabelSource label;
  RegionEnd end;
  bool onRequest = false;  ///< searched for only with `--only`
};

/// The kind that ends a region of this kind; none if the kind has no end.
[[nodiscard]] std::optional<Kind> endOf(Kind kind) noexcept;

/// The built-in rules.
[[nodiscard]] const std::vector<Rule>& builtInRules();

/// The texts of the columns, as in a file of rules and the printed table.
[[nodiscard]] std::string patternText(const Rule& rule);
[[nodiscard]] std::string labelText(const Rule& rule);
[[nodiscard]] std::string endText(const Rule& rule);
/// Sets a column from such a text. Returns what was expected if the text is invalid, else an empty text.
[[nodiscard]] std::string setPattern(Rule& rule, std::string_view text);
[[nodiscard]] std::string setLabel(Rule& rule, std::string_view text);
[[nodiscard]] std::string setEnd(Rule& rule, std::string_view text);

}  // namespace kelvar_sources
