#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sitenotes.h"

namespace kelvar_sources {

using Kind = sitenotes::annotation_t::kind_t;

/// What a marker looks like.
enum class Form {
  directive,  ///< `#pragma omp parallel`, `!$omp parallel`: the last word, among those that name the directive
  call,       ///< `NAME(...)`, with what qualifies the name
  object,     ///< `TYPE variable(...)`, `TYPE(...)` or `TYPE` alone
  argument,   ///< `NAME` as an argument of a call: the call is the site
  remark,     ///< a comment of ours, `// kelvar: NAME "label"`
};

/// Where a marker's label comes from.
struct LabelSource {
  enum class From {
    none,
    literal,   ///< an argument that is a text in quotes
    argument,  ///< an argument that is a text in quotes or a name
    brackets,  ///< what the brackets behind the directive's name hold
  } from = From::none;
  int index = 1;  ///< of the argument, from 1
};

/// Where the region of a marker ends.
struct RegionEnd {
  enum class At {
    none,       ///< the marker is a point
    statement,  ///< with the next statement
    call,       ///< with the call
    block,      ///< with the block around the marker
    until,      ///< at the call `name` with the same label, or else at the nearest
    handle,     ///< at the call `name` whose first argument is the same as the marker's
  } at = At::none;
  std::string name;
};

/// One row of the table of markers.
struct Rule {
  std::string name;
  Form form = Form::call;
  std::string pattern;
  std::optional<Kind> kind;  ///< none: counted, and no site
  LabelSource label;
  RegionEnd end;
  bool onRequest = false;  ///< looked for only where it is named
};

/// The kind that ends a region of this kind; none where it has no end of its own.
[[nodiscard]] std::optional<Kind> endOf(Kind kind) noexcept;

/// The markers that are known without a file of rules.
[[nodiscard]] const std::vector<Rule>& builtInRules();

/// The words of the columns, as a file of rules and the printed table have them.
[[nodiscard]] std::string patternText(const Rule& rule);
[[nodiscard]] std::string labelText(const Rule& rule);
[[nodiscard]] std::string endText(const Rule& rule);
/// Sets a column from such a word; answers what was expected, empty where it fits.
[[nodiscard]] std::string setPattern(Rule& rule, std::string_view text);
[[nodiscard]] std::string setLabel(Rule& rule, std::string_view text);
[[nodiscard]] std::string setEnd(Rule& rule, std::string_view text);

}  // namespace kelvar_sources
