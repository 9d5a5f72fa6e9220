#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Language.h"
#include "RuleSet.h"

namespace kelvar_sources {

/// What is around a site, by which it is found again. Lines have their runs of blanks as one.
struct Anchor {
  std::string rule;      ///< the marker that it was found by; empty: a person placed it
  std::string text;      ///< its line; a directive with its continuations
  std::string function;  ///< the function around it; empty: none
  std::string before;    ///< up to three lines of code before it, a line break between two
  std::string after;     ///< the same behind it
  std::string label;     ///< the label in the source; empty: it has none of its own

  bool operator==(const Anchor&) const = default;
};

/// A marker in a source file, or where the region of one ends.
struct FoundSite {
  static constexpr int kNoEnd = -1;

  Kind kind = sitenotes::annotation_t::parallel;
  int line = 0;
  int column = 0;
  int end = kNoEnd;  ///< of a marker: the index of its end in the list
  bool isEnd = false;
  bool unclosed = false;  ///< its region ought to end somewhere, and does not
  Anchor anchor;
};

/// What a source file says.
struct FileSites {
  std::vector<FoundSite> sites;         ///< the markers as they come in the file, then the ends of their regions
  std::map<std::string, int> kindless;  ///< how many markers there are that have no kind, by their name
  int lines = 0;
};

/// Whether a file may have markers: answered at memory speed, and a no is certain.
[[nodiscard]] bool mayHaveMarkers(std::string_view source, Language language, const RuleSet& rules);

/// Finds the markers of a file. Never fails: broken code yields what is found in it. Requires: fewer than 4 GiB.
[[nodiscard]] FileSites scanSource(std::string_view source, Language language, const RuleSet& rules);

/// A place for each line of code, as a person may have marked one: no kind, no rule.
[[nodiscard]] std::vector<FoundSite> codeLines(std::string_view source, Language language);

}  // namespace kelvar_sources
